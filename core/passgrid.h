#pragma once

#include <QtGlobal>

/// The points of time at which the loops of the program pass: every 10 ms of the monotonic clock, the same
/// for all threads. So they wake together, and an idle processor wakes once for all of them.
namespace PassGrid
{
/// From one point to the next, in nanoseconds.
constexpr qint64 Period = 10 * 1000 * 1000;

/// The point behind `now`; at a point it is the next one. So a pass that took long is followed by one pass,
/// not by all that it has missed. In nanoseconds, not below 0.
constexpr qint64 next(qint64 now)
{
    return (now / Period + 1) * Period;
}

/// Sleeps until the next point; signals do not shorten it. Any thread.
void wait();
} // namespace PassGrid
