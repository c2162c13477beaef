#include "panelrun.h"

#include "framememory.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

std::atomic<int> run{1};

namespace
{
/// So long at most, since a thread has to show that it goes on.
constexpr int AwaitMs = 1000;

/// Lets the thread that waits for it go on. A descriptor, since only waiting for one has a time that no
/// change of the date stretches.
class Signal
{
public:
    void raise() { ::eventfd_write(m_descriptor, 1); }
    void await()
    {
        pollfd raised{m_descriptor, POLLIN, 0};
        ::poll(&raised, 1, AwaitMs);
        eventfd_t times = 0;
        ::eventfd_read(m_descriptor, &times);
    }

private:
    const int m_descriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
};
Signal lcdSignal;
} // namespace

void stopRunning()
{
    run = 0;
    lcdSignal.raise();
}

void lcd_drawn()
{
    if (nLcdBufferChanged) {
        lcdSignal.raise();
    }
}

void lcd_await()
{
    lcdSignal.await();
}

void msleep(std::uint32_t ms)
{
    ::usleep(1000 * ms);
}
