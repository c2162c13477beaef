#include "networkports.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QUdpSocket>

namespace sim
{
namespace
{
Result notToBeHad(const char *protocol, int port, const QString &reason)
{
    return {QString("%1 port %2 cannot be had: %3").arg(protocol).arg(port).arg(reason)};
}

Result checkTcpPort(const QHostAddress &address, quint16 port)
{
    QTcpServer server;
    return server.listen(address, port) ? Result() : notToBeHad("TCP", port, server.errorString());
}
} // namespace

Result checkNetworkPorts(quint16 tcpPort, quint16 firstUdpPort)
{
    for (int port = firstUdpPort; port < firstUdpPort + UdpPortCount; ++port) {
        QUdpSocket udp;
        if (!udp.bind(QHostAddress::AnyIPv4, static_cast<quint16>(port))) {
            return notToBeHad("UDP", port, udp.errorString());
        }
    }
    return checkTcpPort(QHostAddress::AnyIPv4, tcpPort);
}

Result checkLocalPort(quint16 tcpPort)
{
    return checkTcpPort(QHostAddress::LocalHost, tcpPort);
}
} // namespace sim
