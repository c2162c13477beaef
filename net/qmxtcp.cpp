#include "qmxtcp.h"

#include "descriptorlimit.h"
#include "mxsite.h"
#include "tcpclient.h"

#include <QHostAddress>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/epoll.h>
#include <sys/socket.h>

namespace
{
/// Connections that are accepted before others have their turn.
constexpr int AcceptRound = 16;
constexpr int RetryMs = 1000;
} // namespace

QMxTcp::QMxTcp(ClientTurns &turns, QObject *parent)
    : QObject(parent)
    , m_turns(turns)
    , m_poll(this)
{
    if (!m_server.listen(QHostAddress::AnyIPv4, MxSite::tcpPort())) {
        std::printf("can't listen on TCP port %d: %s\n", MxSite::tcpPort(),
                    qPrintable(m_server.errorString()));
        return;
    }
    m_server.pauseAccepting();
    // Qt lets 50 connections wait; in a burst, those beyond would lose a second.
    ::listen(static_cast<int>(m_server.socketDescriptor()), SOMAXCONN);
    if (!m_poll.add(static_cast<int>(m_server.socketDescriptor()), *this, EPOLLIN)) {
        std::printf("can't listen on TCP port %d: %s\n", MxSite::tcpPort(), std::strerror(errno));
        m_server.close();
    }
}

void QMxTcp::onReady(std::uint32_t)
{
    int left = AcceptRound;
    while (left > 0 && acceptClient()) {
        --left;
    }
}

/// \return whether there may be another
bool QMxTcp::acceptClient()
{
    const int listener = static_cast<int>(m_server.socketDescriptor());
    const int descriptor = ::accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (descriptor < 0) {
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
            pauseAccepting();
            m_retry.start(RetryMs, this);
        }
        return false;
    }
    auto *client = new TcpClient(descriptor, m_poll, m_turns, this);
    if (!client->isServed()) {
        delete client; // which the other end sees
        return true;
    }
    connect(client, &QObject::destroyed, this, &QMxTcp::resumeAccepting);
    const bool last = DescriptorLimit::reachesReserve(descriptor);
    if (last) {
        pauseAccepting();
    }
    client->read(); // the first command is mostly there already
    return !last;
}

void QMxTcp::pauseAccepting()
{
    m_accepts = false;
    m_poll.change(static_cast<int>(m_server.socketDescriptor()), *this, 0);
}

void QMxTcp::resumeAccepting()
{
    if (!m_accepts) {
        m_accepts = true;
        m_poll.change(static_cast<int>(m_server.socketDescriptor()), *this, EPOLLIN);
    }
}

void QMxTcp::timerEvent(QTimerEvent *)
{
    m_retry.stop();
    resumeAccepting();
}
