#include "ask.h"

#include "mxsite.h"
#include "testunit.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QUdpSocket>

const QHostAddress Here(QHostAddress::LocalHost);

QByteArray askTcp(const QByteArray &block)
{
    QTcpSocket client;
    client.connectToHost(Here, MxSite::tcpPort());
    client.write(block);
    runUntil([&] { return client.bytesAvailable() > 0; });
    return client.readAll();
}

QByteArray askUdp(const QByteArray &datagram, int port)
{
    QUdpSocket client;
    client.writeDatagram(datagram, Here, static_cast<quint16>(MxSite::udpPort() + port));
    runUntil([&] { return client.hasPendingDatagrams(); });
    QByteArray reply(int(qMax<qint64>(0, client.pendingDatagramSize())), '\0');
    client.readDatagram(reply.data(), reply.size());
    return reply;
}
