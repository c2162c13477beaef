#include "mxapplication.h"

#include "mxshm.h"
#include "qmxcomm.h"

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
            wake();
            return true;
        }
    }
    return QApplication::notify(receiver, event);
}

void MxApplication::wake()
{
    g_mxComm->MxSetBacklight(g_mxConfig->backlight + 1);
    QThread::msleep(WakeMs);
    m_asleep = false;
}
