#include "networkports.h"

#include <QTcpServer>
#include <QUdpSocket>

QString checkNetworkPorts(quint16 tcpPort, quint16 firstUdpPort)
{
    const QString error("%1 port %2 cannot be had: %3");
    QTcpServer tcp;
    if (!tcp.listen(QHostAddress::AnyIPv4, tcpPort)) {
        return error.arg("TCP").arg(tcpPort).arg(tcp.errorString());
    }
    for (int port = firstUdpPort; port < firstUdpPort + udpPortCount; ++port) {
        QUdpSocket udp;
        if (!udp.bind(QHostAddress::AnyIPv4, static_cast<quint16>(port))) {
            return error.arg("UDP").arg(port).arg(udp.errorString());
        }
    }
    return {};
}
