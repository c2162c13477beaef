#include "clientsession.h"

#include "commandinterpreter.h"
#include "commandrunner.h"
#include "commandtext.h"
#include "mxresult.h"
#include "qmxcomm.h"
#include "reply.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{
constexpr int TurnCommands = 1024;

bool endsCommand(char c)
{
    return CommandText::is(c, CommandText::NetworkEnd);
}

/// Empty lines draw no reply.
const char *nextLine(const char *at, const char *limit)
{
    while (at != limit && endsCommand(*at)) {
        ++at;
    }
    return at;
}

/// Behind the last terminator in the text; its beginning when there is none.
const char *behindLastLine(const char *bytes, int size)
{
    while (size > 0 && !endsCommand(bytes[size - 1])) {
        --size;
    }
    return bytes + size;
}

/// A block that goes to the switching board as it is.
bool isForBoard(const char *bytes, int size)
{
    return size >= 2 && std::memcmp(bytes, "\xEB\x90", 2) == 0;
}
} // namespace

ClientSession::~ClientSession()
{
    m_turns.remove(this);
}

void ClientSession::receive(const char *bytes, int size, End end)
{
    m_queuedBytes += size;
    if (hasTail()) {
        m_blocks.last().append(bytes, size);
        m_end = end;
        goOn();
    } else if (isResting()) {
        m_end = end;
        const int done = run(bytes, size, end);
        keep(bytes + done, size - done);
        m_begun = !m_blocks.isEmpty();
        m_queuedBytes -= done;
    } else {
        m_end = end;
        keep(bytes, size);
    }
}

void ClientSession::keep(const char *bytes, int size)
{
    if (size > 0) {
        m_blocks.enqueue(QByteArray(bytes, size));
    }
}

void ClientSession::takeTurn()
{
    goOn();
    settle();
}

void ClientSession::settle()
{
    if (!isResting() && !isStalled()) {
        m_turns.add(this);
    }
    onSettled();
}

/// The first block, as far as one turn goes.
void ClientSession::goOn()
{
    if (m_blocks.isEmpty()) {
        return;
    }
    QByteArray &block = m_blocks.first();
    const int done = run(block.constData(), block.size(), m_blocks.size() == 1 ? m_end : Final);
    block.remove(0, done);
    m_begun = true;
    m_queuedBytes -= done;
    if (block.isEmpty()) {
        m_blocks.dequeue();
        m_begun = false;
        m_state = m_blocks.isEmpty() ? Resting : Waiting;
    }
}

/// \return how many of the bytes are done with
int ClientSession::run(const char *bytes, int size, End end)
{
    if (!m_begun && isForBoard(bytes, size)) {
        forward(bytes, size);
        return size;
    }
    const int skipped = m_overlong ? skipOverlongLine(bytes, size, end) : 0;
    return skipped + runText(bytes + skipped, size - skipped, end);
}

/// Up to the terminator. One that has not come yet is waited for unless this is the end.
int ClientSession::skipOverlongLine(const char *bytes, int size, End end)
{
    const char *const terminator = std::find_if(bytes, bytes + size, endsCommand);
    m_overlong = terminator == bytes + size && end == Open;
    return static_cast<int>(terminator - bytes);
}

int ClientSession::runText(const char *bytes, int size, End end)
{
    const char *const limit = end == Final ? bytes + size : behindLastLine(bytes, size);
    const char *at = nextLine(bytes, limit);
    char *const replies = m_turns.replies();
    int used = 0;
    int commands = 0;
    const bool mayBlock = std::exchange(m_state, Resting) == Blocked;
    while (at != limit && m_state == Resting) {
        const CommandInterpreter command(at, limit, CommandText::NetworkEnd);
        if (command.blocks() && !mayBlock) {
            m_state = Blocked;
            break;
        }
        used += writeReply(replies + used, runCommand(command, *g_mxComm), *g_mxConfig);
        at = nextLine(command.end(), limit);
        const bool full = ++commands == TurnCommands || used > ClientTurns::ReplyRoom - 2 * MxMaxReply;
        if (at != limit && (full || command.blocks())) {
            m_state = Waiting;
        }
    }
    if (m_state == Resting && bytes + size - limit >= MaxBlock) {
        used += writeReply(replies + used, MxError, *g_mxConfig);
        m_overlong = true;
        at = bytes + size;
    }
    if (used > 0) {
        sendReplies(replies, used);
    }
    return static_cast<int>(at - bytes);
}

/// The block itself is the acknowledgement; one that the board's link did not take whole has none.
void ClientSession::forward(const char *bytes, int size)
{
    if (g_mxComm->MxWriteMatrix(reinterpret_cast<const unsigned char *>(bytes), size) == size) {
        sendBlock(bytes, size);
    }
}
