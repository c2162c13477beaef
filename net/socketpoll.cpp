#include "socketpoll.h"

#include <QSocketNotifier>
#include <sys/epoll.h>

namespace
{
/// Sockets that are served before the event loop has its turn. The system goes round among those that are
/// ready.
constexpr int Round = 64;

bool control(int poll, int operation, int descriptor, SocketPoll::Socket &socket, std::uint32_t events)
{
    epoll_event event{};
    event.events = events;
    event.data.ptr = &socket;
    return ::epoll_ctl(poll, operation, descriptor, &event) == 0;
}
} // namespace

SocketPoll::SocketPoll(QObject *parent)
    : QObject(parent)
    , m_poll(::epoll_create1(EPOLL_CLOEXEC))
{
    auto *notifier = new QSocketNotifier(m_poll.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SocketPoll::onActivated);
}

bool SocketPoll::add(int descriptor, Socket &socket, std::uint32_t events)
{
    return control(m_poll.get(), EPOLL_CTL_ADD, descriptor, socket, events);
}

void SocketPoll::change(int descriptor, Socket &socket, std::uint32_t events)
{
    control(m_poll.get(), EPOLL_CTL_MOD, descriptor, socket, events);
}

void SocketPoll::remove(int descriptor)
{
    ::epoll_ctl(m_poll.get(), EPOLL_CTL_DEL, descriptor, nullptr);
}

void SocketPoll::onActivated()
{
    epoll_event ready[Round];
    const int count = ::epoll_wait(m_poll.get(), ready, Round, 0);
    for (int i = 0; i < count; ++i) {
        static_cast<Socket *>(ready[i].data.ptr)->onReady(ready[i].events);
    }
}
