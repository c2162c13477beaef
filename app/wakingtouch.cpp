#include "wakingtouch.h"

#include "tickcount.h"

#include <utility>

void WakingTouch::begin(QEvent::Type type, const QPoint &place, quint32 now)
{
    m_wokenByMove = type == QEvent::MouseMove;
    m_place = place;
    m_awake = now;
}

bool WakingTouch::continues(QEvent::Type type, const QPoint &place, quint32 now)
{
    const bool next = std::exchange(m_wokenByMove, false);
    return next && type == QEvent::MouseButtonPress && place == m_place &&
           ticksBetween(m_awake, now) <= BurstMs;
}
