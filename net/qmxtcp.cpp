#include "qmxtcp.h"

#include "mxsite.h"
#include "networkblock.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTimer>
#include <utility>

namespace
{
/// Replies of one block are gathered up to this many bytes and then leave in one write.
constexpr int MaxReplies = 64 * 1024;
constexpr int AcceptPauseMs = 1000;
} // namespace

QMxTcp::QMxTcp(QObject *parent)
    : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &QMxTcp::onNewConnection);
    connect(&m_server, &QTcpServer::acceptError, this, &QMxTcp::onAcceptError);
    m_server.listen(QHostAddress::AnyIPv4, MxSite::tcpPort());
}

void QMxTcp::onNewConnection()
{
    QTcpSocket *socket = m_server.nextPendingConnection();
    if (socket == nullptr) {
        return;
    }
    // A reply never waits for the acknowledgement of the one before.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    // A client that has lost its power never says so.
    socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    // All that is read at a time fits one block.
    socket->setReadBufferSize(CommandBlock::MaxSize);
    connect(socket, &QTcpSocket::readyRead, this, &QMxTcp::onReadyRead);
    connect(socket, &QTcpSocket::disconnected, socket, &QTcpSocket::deleteLater);
    connect(socket, &QTcpSocket::destroyed, this, [this, socket] { m_waiting.remove(socket); });
}

/// Out of descriptors, say: the server has stopped accepting and would stay so.
void QMxTcp::onAcceptError()
{
    QTimer::singleShot(AcceptPauseMs, &m_server, &QTcpServer::resumeAccepting);
}

void QMxTcp::onReadyRead()
{
    serve(static_cast<QTcpSocket *>(sender()));
}

void QMxTcp::onBytesWritten()
{
    auto *socket = static_cast<QTcpSocket *>(sender());
    if (socket->bytesToWrite() == 0) {
        disconnect(socket, &QTcpSocket::bytesWritten, this, &QMxTcp::onBytesWritten);
        serve(socket);
    }
}

/// Carries out what the client has sent, as long as the kernel takes the replies; goes on when it takes them
/// again.
void QMxTcp::serve(QTcpSocket *socket)
{
    CommandBlock block;
    while (socket->bytesToWrite() == 0 && takeBlock(socket, block)) {
        answer(socket, std::move(block));
    }
    if (socket->bytesToWrite() > 0) {
        connect(socket, &QTcpSocket::bytesWritten, this, &QMxTcp::onBytesWritten, Qt::UniqueConnection);
    }
}

/// The next text to carry out: the rest of a block that had to wait, or else what has come in. A block for
/// the board goes there on the way.
bool QMxTcp::takeBlock(QTcpSocket *socket, CommandBlock &block)
{
    const auto waiting = m_waiting.find(socket);
    if (waiting != m_waiting.end()) {
        block = std::move(*waiting);
        m_waiting.erase(waiting);
        return true;
    }
    if (socket->bytesAvailable() == 0) {
        return false;
    }
    QByteArray bytes = socket->readAll();
    if (NetworkBlock::isForBoard(bytes)) {
        forward(socket, bytes);
        return false;
    }
    block = CommandBlock(std::move(bytes));
    return !block.atEnd();
}

void QMxTcp::answer(QTcpSocket *socket, CommandBlock block)
{
    QByteArray replies;
    while (replies.size() < MaxReplies && block.next()) {
        const Reply reply = NetworkBlock::answer(block);
        replies.append(reply.text, reply.size);
    }
    if (!block.atEnd()) {
        m_waiting.insert(socket, block);
    }
    socket->write(replies);
    socket->flush();
}

/// The block itself is the acknowledgement.
void QMxTcp::forward(QTcpSocket *socket, QByteArray &bytes)
{
    if (NetworkBlock::forward(bytes)) {
        socket->write(bytes);
        socket->flush();
    }
}
