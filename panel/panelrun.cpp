#include "panelrun.h"

#include "framememory.h"

#include <semaphore.h>
#include <unistd.h>

std::atomic<int> run{1};

namespace
{
/// Lets the thread that waits for it go on, once for each time that it was raised.
class Signal
{
public:
    Signal() { sem_init(&m_count, 0, 0); }
    void raise() { sem_post(&m_count); }
    void await() { sem_wait(&m_count); }

private:
    sem_t m_count;
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
