#pragma once

#include "filedescriptor.h"

#include <QObject>
#include <cstdint>

/// Waits for any number of sockets through one descriptor of the event loop, so that those at rest cost the
/// loop nothing. Main thread.
class SocketPoll : public QObject
{
public:
    /// What has one of the sockets.
    class Socket
    {
    public:
        /// `events` are those of epoll. It may be the end of this object.
        virtual void onReady(std::uint32_t events) = 0;

    protected:
        ~Socket() = default;
    };

    explicit SocketPoll(QObject *parent);

    /// Begins to wait for `events` of epoll, until `remove`. \return false when the system has no room for it
    bool add(int descriptor, Socket &socket, std::uint32_t events);
    /// Waits for others from now on.
    void change(int descriptor, Socket &socket, std::uint32_t events);
    /// To be called before the descriptor is closed: for a moment a child process may hold a copy of it, with
    /// which its events would go on.
    void remove(int descriptor);

private:
    void onActivated();

    const FileDescriptor m_poll;
};
