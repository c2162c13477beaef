#pragma once

#include <QtGlobal>
#include <time.h>

/// Monotonic milliseconds cut to 32 bits (wraps after 49.7 days). Any thread.
inline quint32 GetTickCount()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<quint32>(quint64(now.tv_sec) * 1000 + quint64(now.tv_nsec) / 1000000);
}

/// Milliseconds since 1970 by the system clock. Any thread. Qt's own has times of 32 bits where the system's
/// libraries have, and ends in 2038.
inline qint64 systemMs()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

/// Milliseconds between two ticks. After a wrap the difference is the reversed one, which is large: a timer
/// then runs out early instead of standing still.
inline quint32 ticksBetween(quint32 then, quint32 now)
{
    return now >= then ? now - then : then - now;
}
