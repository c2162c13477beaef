#pragma once

#include <QObject>
#include <QString>

/// Tells systemd how the unit is, when systemd has started it as a service: that it is ready, and that all
/// of its threads go on. Otherwise, and in a build without libsystemd, nothing happens. GUI thread only.
class ServiceManager : public QObject
{
public:
    /// The ports listen. From now on the watchdog is fed, by the event loop, ten times in its time as long as
    /// every `Heartbeat` beats. `status` is shown beside the service.
    void ready(const QString &status);

protected:
    void timerEvent(QTimerEvent *event) override;
};
