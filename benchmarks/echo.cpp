// A bare echo server on Qt's sockets: the peer that the network figures stand beside. Arguments: TCP port,
// UDP port.

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>

static void echoStream(QTcpSocket *socket)
{
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] {
        socket->write(socket->readAll());
        socket->flush();
    });
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QTcpSocket::deleteLater);
}

static void echoDatagrams(QUdpSocket &socket)
{
    while (socket.hasPendingDatagrams()) {
        QByteArray datagram(static_cast<int>(socket.pendingDatagramSize()), Qt::Uninitialized);
        QHostAddress address;
        quint16 port = 0;
        socket.readDatagram(datagram.data(), datagram.size(), &address, &port);
        socket.writeDatagram(datagram, address, port);
    }
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        return 2;
    }
    QTcpServer server;
    QObject::connect(&server, &QTcpServer::newConnection,
                     [&] { echoStream(server.nextPendingConnection()); });
    bool listens = server.listen(QHostAddress(QHostAddress::AnyIPv4), arguments.at(1).toUShort());
    QUdpSocket datagrams[8];
    quint16 port = arguments.at(2).toUShort();
    for (QUdpSocket &socket : datagrams) {
        QObject::connect(&socket, &QUdpSocket::readyRead, [&socket] { echoDatagrams(socket); });
        listens = listens && socket.bind(QHostAddress(QHostAddress::AnyIPv4), port++);
    }
    return listens ? QCoreApplication::exec() : 1;
}
