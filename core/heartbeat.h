#pragma once

#include <atomic>

/// One thread's sign that it goes on: made by the thread when its work begins, beaten in every pass, gone
/// with the work. A thread that may wait for long wakes to beat at least once a second.
class Heartbeat
{
public:
    Heartbeat();
    Heartbeat(const Heartbeat &) = delete;
    Heartbeat &operator=(const Heartbeat &) = delete;
    ~Heartbeat();

    /// Takes no lock.
    void beat() { m_beaten.store(true, std::memory_order_relaxed); }

    /// Whether all that there are have beaten since this was last so. For one thread.
    static bool allBeat();

private:
    std::atomic<bool> m_beaten{false};
};
