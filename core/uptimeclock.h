#pragma once

#include "sharedfield.h"

#include <QDateTime>

/// Keeps `uptime`, in whole seconds, about once a second: in one of 101 passes of the control loop.
class UptimeClock
{
public:
    /// Call once a pass.
    void step(SharedInt32 &uptime)
    {
        if (m_pass > 99) {
            m_pass = 0;
        } else if (++m_pass == 50) {
            uptime = static_cast<std::int32_t>(m_start.secsTo(QDateTime::currentDateTimeUtc()));
        }
    }

private:
    const QDateTime m_start = QDateTime::currentDateTimeUtc();
    int m_pass = 0;
};
