#include "qmxudp.h"

#include "commandblock.h"
#include "mxsite.h"
#include "networkblock.h"

#include <QHostAddress>
#include <QUdpSocket>
#include <utility>

namespace
{
/// A recall blocks this thread for a second, in which the kernel must hold what arrives.
constexpr int ReceiveBuffer = 4 * 1024 * 1024;

/// Datagrams of one port that are served before the next port has its turn. A flood on one port then cannot
/// keep the others, and the rest of the program, waiting for ever; what is left is signalled again.
constexpr int Turn = 256;
} // namespace

QMxUdp::QMxUdp(QObject *parent)
    : QObject(parent)
{
    for (int i = 0; i < PortCount; ++i) {
        m_sockets[i] = new QUdpSocket(this);
        m_sockets[i]->bind(QHostAddress(QHostAddress::AnyIPv4), static_cast<quint16>(MxSite::udpPort() + i));
        m_sockets[i]->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, ReceiveBuffer);
        connect(m_sockets[i], &QUdpSocket::readyRead, this, &QMxUdp::readPendingDatagrams);
    }
}

void QMxUdp::readPendingDatagrams()
{
    for (QUdpSocket *socket : m_sockets) {
        if (drain(socket) == 0 && socket == sender()) {
            // An earlier call has already served what this signal announces. Unless a read follows a signal,
            // even one that finds nothing, Qt never signals this socket again.
            serve(socket);
        }
    }
}

int QMxUdp::drain(QUdpSocket *socket)
{
    int served = 0;
    while (served < Turn && socket->hasPendingDatagrams() && serve(socket)) {
        ++served;
    }
    return served;
}

/// Reads and answers one datagram. False when there is none.
bool QMxUdp::serve(QUdpSocket *socket)
{
    QHostAddress address;
    quint16 port = 0;
    const qint64 size = socket->readDatagram(m_datagram, sizeof m_datagram, &address, &port);
    if (size < 0) {
        return false;
    }
    QByteArray bytes(m_datagram, static_cast<int>(size));
    if (NetworkBlock::isForBoard(bytes)) {
        if (NetworkBlock::forward(bytes)) {
            socket->writeDatagram(bytes, address, port);
        }
        return true;
    }
    CommandBlock block(std::move(bytes));
    while (block.next()) {
        const Reply reply = NetworkBlock::answer(block);
        socket->writeDatagram(reply.text, reply.size, address, port);
    }
    socket->flush();
    return true;
}
