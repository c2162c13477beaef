#pragma once

#include <QEvent>
#include <QPoint>

/// The touch that has woken the screen. One at a new place arrives as a move to it, which wakes, and a press:
/// both are one burst. Its times are ticks, see `GetTickCount`.
class WakingTouch
{
public:
    /// How long after the screen was awake the press may come.
    static constexpr quint32 BurstMs = 100;

    /// This kind of event, at this place of the screen, has woken it; it was awake at `now`.
    void begin(QEvent::Type type, const QPoint &place, quint32 now);

    /// To be asked once about each later event. \return whether it is still of the touch that woke
    bool continues(QEvent::Type type, const QPoint &place, quint32 now);

private:
    bool m_wokenByMove = false; ///< and nothing has come since
    QPoint m_place;
    quint32 m_awake = 0;
};
