#pragma once

#include <QObject>

class QUdpSocket;

/// Serves the command language, and frames for the switching board, on eight neighbouring UDP ports of every
/// IPv4 address, one datagram at a time. Replies go to the sender, from the port that it wrote to, one
/// datagram each. Main thread.
class QMxUdp : public QObject
{
    Q_OBJECT

public:
    /// Binds at once; a port that is taken stays silent.
    explicit QMxUdp(QObject *parent);

private slots:
    void readPendingDatagrams();

private:
    static constexpr int PortCount = 8;

    int drain(QUdpSocket *socket);
    bool serve(QUdpSocket *socket);

    QUdpSocket *m_sockets[PortCount];
    char m_datagram[64 * 1024]; ///< more than the longest datagram, 65,507 bytes
};
