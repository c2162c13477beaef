#include "tcpclient.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <utility>

namespace
{
/// A shorter block is taken for whole. This is the segment size that TCP assumes when a peer names none
/// (RFC 9293); networks that cut into smaller ones are rare.
constexpr int SmallestCut = 536;
constexpr int SilenceMs = 50;

void setOption(int socket, int level, int option)
{
    const int on = 1;
    ::setsockopt(socket, level, option, &on, sizeof on);
}
} // namespace

TcpClient::TcpClient(int descriptor, SocketPoll &poll, ClientTurns &turns, QObject *parent)
    : QObject(parent)
    , ClientSession(turns)
    , m_poll(poll)
    , m_socket(descriptor)
    , m_events(EPOLLIN)
{
    // A reply never waits for the acknowledgement of the one before.
    setOption(descriptor, IPPROTO_TCP, TCP_NODELAY);
    // A client that has lost its power never says so.
    setOption(descriptor, SOL_SOCKET, SO_KEEPALIVE);
    m_isServed = m_poll.add(descriptor, *this, m_events);
}

void TcpClient::onReady(std::uint32_t events)
{
    if ((events & (EPOLLERR | EPOLLHUP)) != 0) {
        end();
    } else if ((events & EPOLLOUT) != 0) {
        sendRest();
    } else {
        read();
    }
}

void TcpClient::end()
{
    m_poll.remove(m_socket.get());
    delete this;
}

void TcpClient::read()
{
    static char bytes[MaxBlock];
    const ssize_t count = ::recv(m_socket.get(), bytes, sizeof bytes, 0);
    if (count < 0) {
        return; // interrupted; or the connection is broken, which is told next
    }
    m_finished = count == 0;
    receive(bytes, static_cast<int>(count), count >= SmallestCut ? Open : Final);
    settle();
}

void TcpClient::timerEvent(QTimerEvent *)
{
    m_silence.stop();
    if (hasTail()) {
        receive(nullptr, 0, Final);
        settle();
    }
}

void TcpClient::send(const char *bytes, int size)
{
    ssize_t sent = isStalled() ? 0 : ::send(m_socket.get(), bytes, static_cast<size_t>(size), MSG_NOSIGNAL);
    sent = qMax<ssize_t>(sent, 0); // a broken connection is told next
    if (sent < size) {
        m_unsent.append(bytes + sent, size - static_cast<int>(sent));
    }
}

void TcpClient::sendRest()
{
    const QByteArray unsent = std::exchange(m_unsent, QByteArray());
    send(unsent.constData(), unsent.size());
    settle();
}

void TcpClient::onSettled()
{
    if (m_finished && isResting() && !isStalled()) {
        end();
        return;
    }
    if (hasTail()) {
        m_silence.start(SilenceMs, this);
    }
    const std::uint32_t wanted = wantedEvents();
    if (wanted != m_events) {
        m_events = wanted;
        m_poll.change(m_socket.get(), *this, wanted);
    }
}

/// A broken connection is told whatever is waited for.
std::uint32_t TcpClient::wantedEvents() const
{
    if (isStalled()) {
        return EPOLLOUT;
    }
    return isResting() && !m_finished ? std::uint32_t(EPOLLIN) : 0;
}
