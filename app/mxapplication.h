#pragma once

#include "wakingtouch.h"

#include <QApplication>
#include <QTimer>

/// The application, which puts the screen to sleep when nobody touches it, and wakes it at the next touch.
/// The touch that wakes it reaches no widget. GUI thread only.
class MxApplication : public QApplication, public QTimer
{
public:
    MxApplication(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;

protected:
    /// Once a second: counts how long nobody has touched the screen.
    void timerEvent(QTimerEvent *event) override;

private:
    bool wakes(const QEvent &touch);

    int m_idleSeconds = 0;
    WakingTouch m_wakingTouch;
};
