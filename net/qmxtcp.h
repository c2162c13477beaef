#pragma once

#include "socketpoll.h"

#include <QBasicTimer>
#include <QObject>
#include <QTcpServer>

class ClientTurns;

/// Serves the command language, and frames for the switching board, on the unit's TCP port of every IPv4
/// address. Any number of clients, as long as the device keeps its reserve of descriptors: before that is
/// touched no connection is accepted until one ends. Main thread.
class QMxTcp : public QObject, private SocketPoll::Socket
{
    Q_OBJECT

public:
    /// Listens at once; a port that is taken is named on the output.
    QMxTcp(ClientTurns &turns, QObject *parent);

protected:
    /// Tries again when no descriptor could be had.
    void timerEvent(QTimerEvent *event) override;

private:
    void onReady(std::uint32_t events) override;
    bool acceptClient();
    void pauseAccepting();
    void resumeAccepting();

    ClientTurns &m_turns;
    SocketPoll m_poll;
    /// Only listens: its own accepting cannot stop between two connections.
    QTcpServer m_server;
    QBasicTimer m_retry;
    bool m_accepts = true;
    QObject m_clients; ///< who has them; last, since they use the others to their end
};
