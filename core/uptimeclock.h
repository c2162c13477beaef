#pragma once

#include "sharedfield.h"

/// Keeps `uptime`, in whole seconds, about once a second: in one of 101 passes of the control loop. Times are
/// milliseconds of the same clock.
class UptimeClock
{
public:
    explicit UptimeClock(qint64 start)
        : m_start(start)
    {
    }

    /// Call once a pass.
    void step(qint64 now, SharedInt32 &uptime)
    {
        if (m_pass > 99) {
            m_pass = 0;
        } else if (++m_pass == 50) {
            uptime = static_cast<std::int32_t>((now - m_start) / 1000);
        }
    }

private:
    const qint64 m_start;
    int m_pass = 0;
};
