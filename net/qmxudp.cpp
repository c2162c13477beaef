#include "qmxudp.h"

#include "mxsite.h"

#include <QUdpSocket>
#include <cstdio>
#include <cstring>

namespace
{
/// A recall blocks this thread for a second, in which the kernel must hold what arrives.
constexpr int ReceiveBuffer = 4 * 1024 * 1024;

/// Datagrams of one port, and their bytes, that are served before the next port has its turn. A flood on one
/// port then cannot keep the others, and the rest of the program, waiting for ever; what is left is signalled
/// again.
constexpr int TurnDatagrams = 256;
constexpr int TurnBytes = 64 * 1024;

/// The one reply that another unit would answer in turn. Without an answer no two units keep each other
/// talking.
bool isErrorReply(const char *datagram, int size)
{
    return size == 4 && std::memcmp(datagram, "ERR.", 4) == 0;
}
} // namespace

QMxUdp::QMxUdp(ClientTurns &turns, QObject *parent)
    : QObject(parent)
    , m_turns(turns)
{
    for (int i = 0; i < PortCount; ++i) {
        const auto port = static_cast<quint16>(MxSite::udpPort() + i);
        m_sockets[i] = new QUdpSocket(this);
        if (!m_sockets[i]->bind(QHostAddress(QHostAddress::AnyIPv4), port)) {
            std::printf("can't bind UDP port %d: %s\n", port, qPrintable(m_sockets[i]->errorString()));
        }
        m_sockets[i]->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, ReceiveBuffer);
        connect(m_sockets[i], &QUdpSocket::readyRead, this,
                [this, i] { readPendingDatagrams(m_sockets[i]); });
    }
}

QMxUdp::~QMxUdp()
{
    qDeleteAll(m_peers);
}

void QMxUdp::forget(UdpPeer *peer)
{
    m_peers.remove(peer->key());
    delete peer;
}

void QMxUdp::readPendingDatagrams(QUdpSocket *socket)
{
    int datagrams = 0;
    int bytes = 0;
    do {
        const int size = serve(socket);
        if (size < 0) {
            break;
        }
        bytes += size;
        ++datagrams;
    } while (datagrams < TurnDatagrams && bytes < TurnBytes && socket->hasPendingDatagrams());
}

/// Reads and takes one datagram. \return its size, -1 when there is none
int QMxUdp::serve(QUdpSocket *socket)
{
    QHostAddress address;
    quint16 port = 0;
    const int size = static_cast<int>(socket->readDatagram(m_datagram, sizeof m_datagram, &address, &port));
    if (size >= 0 && !isErrorReply(m_datagram, size)) {
        take(socket, address, port, size);
    }
    return size;
}

void QMxUdp::take(QUdpSocket *socket, const QHostAddress &address, quint16 port, int size)
{
    if (!m_peers.isEmpty()) {
        if (UdpPeer *known = m_peers.value(UdpPeer::keyOf(socket, address, port))) {
            known->take(m_datagram, size);
            return;
        }
    }
    if (!m_visitor) {
        m_visitor.reset(new UdpPeer(*this, m_turns));
    }
    m_visitor->setAddress(socket, address, port);
    if (!m_visitor->take(m_datagram, size)) {
        return;
    }
    if (m_peers.size() < MaxPeers) {
        UdpPeer *peer = m_visitor.release();
        m_peers.insert(peer->key(), peer);
        peer->stay();
    }
    m_visitor.reset();
}
