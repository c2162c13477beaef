#pragma once

#include "clientsession.h"
#include "filedescriptor.h"
#include "socketpoll.h"

#include <QBasicTimer>
#include <QObject>

/// One TCP connection. The end of what the client sends ("half-close") means: finish, answer, then close;
/// Qt's socket closes both directions then, which is why the descriptor is used as it is.
///
/// A block is what comes in one read. One as large as a segment may have been cut by the network: the
/// beginning of a line at its end waits for the rest, or until nothing has come for 50 ms. While the client
/// does not take its replies, or has commands left, nothing more is read, and TCP holds it back. Main thread.
class TcpClient : public QObject, public ClientSession, private SocketPoll::Socket
{
public:
    /// Owns `descriptor`, which does not block. The object deletes itself when the connection has ended.
    TcpClient(int descriptor, SocketPoll &poll, ClientTurns &turns, QObject *parent);

    /// False when the system has no room to wait for it: nothing but to be deleted.
    bool isServed() const { return m_isServed; }

    /// Takes what has come. It may be the end of this object.
    void read();

protected:
    void timerEvent(QTimerEvent *event) override;
    void sendReplies(const char *replies, int size) override { send(replies, size); }
    void sendBlock(const char *bytes, int size) override { send(bytes, size); }
    bool isStalled() const override { return !m_unsent.isEmpty(); }
    void onSettled() override;

private:
    void onReady(std::uint32_t events) override;
    /// The end of this object.
    void end();
    void send(const char *bytes, int size);
    void sendRest();
    std::uint32_t wantedEvents() const;

    SocketPoll &m_poll;
    bool m_isServed = false;
    FileDescriptor m_socket;
    QBasicTimer m_silence;
    QByteArray m_unsent;
    bool m_finished = false; ///< nothing more will come
    std::uint32_t m_events;  ///< what is waited for
};
