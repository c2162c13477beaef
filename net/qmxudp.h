#pragma once

#include "udppeer.h"

#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <memory>

class QUdpSocket;

/// Serves the command language, and frames for the switching board, on eight neighbouring UDP ports of every
/// IPv4 address, one datagram at a time. Replies go to the sender, from the port that it wrote to, one
/// datagram each. Main thread.
///
/// A sender is remembered only while some of its commands wait. At most `MaxPeers` are, with one block of
/// commands each; what comes beyond that is dropped, as a network drops datagrams.
class QMxUdp : public QObject, private UdpPeer::Owner
{
    Q_OBJECT

public:
    static constexpr int MaxPeers = 256;

    /// Binds at once; a port that is taken is named on the output and stays silent.
    QMxUdp(ClientTurns &turns, QObject *parent);
    ~QMxUdp() override;

    /// Senders that are remembered.
    int peerCount() const { return m_peers.size(); }

private:
    static constexpr int PortCount = 8;

    void forget(UdpPeer *peer) override;
    void readPendingDatagrams(QUdpSocket *socket);
    int serve(QUdpSocket *socket);
    void take(QUdpSocket *socket, const QHostAddress &address, quint16 port, int size);

    ClientTurns &m_turns;
    QUdpSocket *m_sockets[PortCount];
    QHash<quint64, UdpPeer *> m_peers;        ///< by address, port and socket
    std::unique_ptr<UdpPeer> m_visitor;       ///< who is served at once and forgotten
    char m_datagram[ClientSession::MaxBlock]; ///< more than the longest datagram, 65,507 bytes
};
