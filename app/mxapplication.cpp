#include "mxapplication.h"

#include "mxshm.h"
#include "qmxcomm.h"

#include <QMouseEvent>
#include <utility>

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
    if (event->timerId() != timerId() || m_asleep) {
        return;
    }
    ++m_idleSeconds;
    const auto sleep = static_cast<unsigned>(g_mxConfig->sleep);
    if (sleep == MxSleepNever) {
        m_idleSeconds = 0;
    } else if (sleep < MxSleepNever && m_idleSeconds >= SleepAfter[sleep]) {
        m_asleep = true;
        g_mxComm->MxSetBacklight(0);
    }
}

bool MxApplication::notify(QObject *receiver, QEvent *event)
{
    if (isTouch(*event)) {
        m_idleSeconds = 0;
        if (m_asleep) {
            wake(*event);
            return true;
        }
        if (continuesWakingTouch(*event)) {
            return true;
        }
    }
    return QApplication::notify(receiver, event);
}

void MxApplication::wake(const QEvent &touch)
{
    g_mxComm->MxSetBacklight(backlightLevel(*g_mxConfig));
    QThread::msleep(WakeMs);
    m_asleep = false;
    m_wokenByMove = touch.type() == QEvent::MouseMove;
    m_wakingPlace = placeOf(touch);
}

/// A touch at a new place arrives as a move to it, which has then woken the screen, and a press.
bool MxApplication::continuesWakingTouch(const QEvent &touch)
{
    const bool next = std::exchange(m_wokenByMove, false);
    return next && touch.type() == QEvent::MouseButtonPress && placeOf(touch) == m_wakingPlace;
}
