#include "servicemanager.h"

#include "heartbeat.h"

#ifdef MX_SYSTEMD
#include <systemd/sd-daemon.h>
#endif

namespace
{
constexpr int FeedsPerTime = 10;

#ifdef MX_SYSTEMD
void tell(const QByteArray &state)
{
    sd_notify(0, state.constData());
}

/// Milliseconds until a watchdog that is not fed bites; 0 when there is none.
int watchdogMs()
{
    uint64_t microseconds = 0;
    return sd_watchdog_enabled(0, &microseconds) > 0 ? static_cast<int>(microseconds / 1000) : 0;
}
#else
void tell(const QByteArray &) {}

int watchdogMs()
{
    return 0;
}
#endif
} // namespace

void ServiceManager::ready(const QString &status)
{
    tell("READY=1\nSTATUS=" + status.toUtf8());
    if (const int time = watchdogMs()) {
        startTimer(time / FeedsPerTime, Qt::CoarseTimer);
    }
}

void ServiceManager::timerEvent(QTimerEvent *)
{
    if (Heartbeat::allBeat()) {
        tell("WATCHDOG=1");
    }
}
