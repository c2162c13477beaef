#include "rawsocket.h"

#include <arpa/inet.h>
#include <sys/socket.h>

namespace
{
sockaddr_in local(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}
} // namespace

RawSocket::RawSocket(int type)
    : m_socket(::socket(AF_INET, type | SOCK_CLOEXEC, 0))
{
    const timeval timeout{20, 0};
    ::setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    ::setsockopt(m_socket.get(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
}

RawSocket *RawSocket::tcp(quint16 port)
{
    auto *socket = new RawSocket(SOCK_STREAM);
    const sockaddr_in address = local(port);
    if (::connect(socket->descriptor(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        qFatal("cannot connect");
    }
    return socket;
}

RawSocket *RawSocket::udp()
{
    return new RawSocket(SOCK_DGRAM);
}

bool RawSocket::send(const QByteArray &bytes) const
{
    return ::send(descriptor(), bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}

bool RawSocket::sendTo(quint16 port, const QByteArray &bytes) const
{
    const sockaddr_in to = local(port);
    return ::sendto(descriptor(), bytes.constData(), size_t(bytes.size()), 0,
                    reinterpret_cast<const sockaddr *>(&to), sizeof to) == bytes.size();
}

QByteArray RawSocket::receive() const
{
    quint16 port = 0;
    return receiveFrom(port);
}

QByteArray RawSocket::receiveFrom(quint16 &port) const
{
    char bytes[65536];
    sockaddr_in from{};
    socklen_t size = sizeof from;
    const auto count =
        ::recvfrom(descriptor(), bytes, sizeof bytes, 0, reinterpret_cast<sockaddr *>(&from), &size);
    port = ntohs(from.sin_port);
    return count > 0 ? QByteArray(bytes, int(count)) : QByteArray();
}

void RawSocket::reset()
{
    const linger hard{1, 0};
    ::setsockopt(descriptor(), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    m_socket.reset(-1);
}
