#pragma once

#include "filedescriptor.h"

#include <QByteArray>
#include <QtGlobal>

/// A client's blocking socket to a port of this machine, with a time-out of 20 s on every call. For clients
/// in threads of their own, beside the event loop that serves them.
class RawSocket
{
public:
    static RawSocket *tcp(quint16 port);
    static RawSocket *udp();

    bool send(const QByteArray &bytes) const;
    bool sendTo(quint16 port, const QByteArray &bytes) const;
    /// The next datagram, or what has come on the stream; empty at its end or when the time is over.
    QByteArray receive() const;
    /// The next datagram and the port that it came from.
    QByteArray receiveFrom(quint16 &port) const;
    /// Closes with a reset, as a client that is pulled out.
    void reset();
    int descriptor() const { return m_socket.get(); }

private:
    explicit RawSocket(int type);
    FileDescriptor m_socket;
};
