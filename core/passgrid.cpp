#include "passgrid.h"

#include <cerrno>
#include <time.h>

namespace
{
constexpr qint64 Second = 1000 * 1000 * 1000;
}

void PassGrid::wait()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const qint64 point = next(now.tv_sec * Second + now.tv_nsec);
    timespec until{};
    until.tv_sec = static_cast<time_t>(point / Second);
    until.tv_nsec = static_cast<long>(point % Second);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
}
