#include "networkblock.h"

#include "commandblock.h"
#include "qmxcomm.h"

bool NetworkBlock::isForBoard(const QByteArray &bytes)
{
    return bytes.startsWith("\xEB\x90");
}

bool NetworkBlock::forward(QByteArray &bytes)
{
    return g_mxComm->MxWriteMatrix(reinterpret_cast<unsigned char *>(bytes.data()), bytes.size()) ==
           bytes.size();
}

Reply NetworkBlock::answer(CommandBlock &block)
{
    return replyTo(g_mxComm->MxOnUartCommand(block.line(), block.length()), *g_mxConfig);
}
