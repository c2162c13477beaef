#pragma once

#include "commandblock.h"

#include <QHash>
#include <QObject>
#include <QTcpServer>

class QTcpSocket;

/// Serves the command language, and frames for the switching board, on the unit's TCP port of every IPv4
/// address. Main thread. Any number of clients; nothing of one read is carried into the next.
///
/// What a client makes the unit keep is bounded: while a client does not read its replies, nothing more of
/// what it has sent is carried out, and TCP holds it back.
class QMxTcp : public QObject
{
    Q_OBJECT

public:
    /// Listens at once; a port that is taken is not reported.
    explicit QMxTcp(QObject *parent);

private slots:
    void onNewConnection();
    void onReadyRead();
    void onBytesWritten();
    void onAcceptError();

private:
    void serve(QTcpSocket *socket);
    bool takeBlock(QTcpSocket *socket, CommandBlock &block);
    void answer(QTcpSocket *socket, CommandBlock block);
    void forward(QTcpSocket *socket, QByteArray &bytes);

    /// Blocks that wait until their client has read the replies to their beginning. It outlives the server, whose
    /// sockets take themselves out of it.
    QHash<QTcpSocket *, CommandBlock> m_waiting;
    QTcpServer m_server;
};
