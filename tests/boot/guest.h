#pragma once

#include "testunit.h"
#include "touchpanel.h"

#include <QByteArray>
#include <functional>

/// The guest as a unit: its own `/dev`, `/sys`, `/home` and `/etc`, with the virtual unit's wires in the
/// places of the devices that a PC has not. What the kernel would have in /sys is in memory, bound over the
/// folders there.
struct GuestUnit : TestUnit {
    /// The switching board has `ports` ports.
    explicit GuestUnit(int ports);

    TouchPanel touchPanel;
};

/// The one that the tests run on; null while the guest is no unit.
extern GuestUnit *g_unit;

/// Runs a shell command. \return what it printed, without the last line end
QByteArray shell(const QByteArray &command);

/// A property of the service, as `systemctl show` has it.
QByteArray serviceProperty(const char *name);

/// The same of a time, in microseconds since the kernel started.
qint64 serviceTimeUs(const char *name);

/// When the program said a line that begins so, since it was started; 0 when it has not.
qint64 saidAtUs(const char *word);

/// The process id of the program, 0 while it does not run.
int programId();

/// The same settings on the unit's own paths.
sim::UnitFiles unitFiles();

/// The answer of the unit to a command over TCP; empty when nobody listens, or the unit ends meanwhile.
QByteArray answer(const QByteArray &command);

/// Tries the condition every 5 ms until it holds. \return whether it does, within the time
bool holdsWithin(int timeoutMs, const std::function<bool()> &condition);

/// Has the machine's keeper take a picture of the screen. \return whether it has
bool askPicture(const QByteArray &name);

/// CLOCK_MONOTONIC, microseconds since the kernel started.
qint64 nowUs();
