#include "mxapplication.h"

#include "mxshm.h"
#include "qmxcomm.h"
#include "tickcount.h"

#include <QMouseEvent>

namespace
{
constexpr int TickMs = 1000;
constexpr unsigned long WakeMs = 200;

/// Seconds until the screen goes off, by the `sleep` setting. With other settings it never does.
constexpr int SleepAfter[] = {60, 300, 900, 1800};

bool isTouch(const QEvent &event)
{
    return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonRelease ||
           event.type() == QEvent::MouseMove;
}

/// On the screen.
QPoint placeOf(const QEvent &touch)
{
    const auto *mouse = dynamic_cast<const QMouseEvent *>(&touch);
    return mouse != nullptr ? mouse->globalPos() : QPoint();
}
} // namespace

MxApplication::MxApplication(int &argc, char **argv)
    : QApplication(argc, argv)
{
    QTimer::start(TickMs);
}

void MxApplication::timerEvent(QTimerEvent *event)
{
    // Qt's own timers of the application object arrive here as well.
    if (event->timerId() != timerId() || g_mxComm->backlight().asleep()) {
        return;
    }
    ++m_idleSeconds;
    const auto sleep = static_cast<unsigned>(g_mxConfig->sleep);
    if (sleep == MxSleepNever) {
        m_idleSeconds = 0;
    } else if (sleep < MxSleepNever && m_idleSeconds >= SleepAfter[sleep]) {
        g_mxComm->backlight().sleep();
    }
}

bool MxApplication::notify(QObject *receiver, QEvent *event)
{
    if (isTouch(*event)) {
        m_idleSeconds = 0;
        if (wakes(*event)) {
            return true;
        }
    }
    return QApplication::notify(receiver, event);
}

/// Whether the touch only wakes the screen.
bool MxApplication::wakes(const QEvent &touch)
{
    Backlight &backlight = g_mxComm->backlight();
    if (!backlight.asleep()) {
        return m_wakingTouch.continues(touch.type(), placeOf(touch), GetTickCount());
    }
    backlight.wake();
    QThread::msleep(WakeMs);
    m_wakingTouch.begin(touch.type(), placeOf(touch), GetTickCount());
    return true;
}
