#include "udppeer.h"

#include <QUdpSocket>
#include <cstring>

void UdpPeer::setAddress(QUdpSocket *socket, const QHostAddress &address, quint16 port)
{
    m_socket = socket;
    m_address = address;
    m_port = port;
}

quint64 UdpPeer::keyOf(const QUdpSocket *socket, const QHostAddress &address, quint16 port)
{
    return quint64(address.toIPv4Address()) << 32 | quint64(port) << 16 | socket->localPort();
}

bool UdpPeer::take(const char *datagram, int size)
{
    if (isResting() || queuedBytes() + size <= MaxBlock) {
        receive(datagram, size, Final);
    }
    return !isResting();
}

void UdpPeer::stay()
{
    settle();
}

/// A datagram for each reply.
void UdpPeer::sendReplies(const char *replies, int size)
{
    const char *const end = replies + size;
    while (replies != end) {
        const char *next =
            static_cast<const char *>(std::memchr(replies, '.', static_cast<size_t>(end - replies))) + 1;
        m_socket->writeDatagram(replies, next - replies, m_address, m_port);
        replies = next;
    }
}

void UdpPeer::sendBlock(const char *bytes, int size)
{
    m_socket->writeDatagram(bytes, size, m_address, m_port);
}

void UdpPeer::onSettled()
{
    if (isResting()) {
        m_owner.forget(this);
    }
}
