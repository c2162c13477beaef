#include "networkports.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QUdpSocket>

namespace
{
const char errorText[] = "%1 port %2 cannot be had: %3";

QString checkTcpPort(const QHostAddress &address, quint16 port)
{
    QTcpServer server;
    return server.listen(address, port) ? QString()
                                        : QString(errorText).arg("TCP").arg(port).arg(server.errorString());
}
} // namespace

QString checkNetworkPorts(quint16 tcpPort, quint16 firstUdpPort)
{
    for (int port = firstUdpPort; port < firstUdpPort + udpPortCount; ++port) {
        QUdpSocket udp;
        if (!udp.bind(QHostAddress::AnyIPv4, static_cast<quint16>(port))) {
            return QString(errorText).arg("UDP").arg(port).arg(udp.errorString());
        }
    }
    return checkTcpPort(QHostAddress::AnyIPv4, tcpPort);
}

QString checkLocalPort(quint16 tcpPort)
{
    return checkTcpPort(QHostAddress::LocalHost, tcpPort);
}
