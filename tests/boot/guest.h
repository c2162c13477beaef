#pragma once

#include "touchpanel.h"
#include "virtualunit.h"

#include <QByteArray>
#include <functional>
#include <vector>

/// The guest as a unit: its own `/dev`, `/sys`, `/home` and `/etc`, with the virtual unit's wires in the
/// places of the devices that a PC has not. What the kernel would have in /sys is in memory, bound over the
/// folders there.
class GuestUnit
{
public:
    /// The switching board has `ports` ports.
    explicit GuestUnit(int ports);

    sim::VirtualUnit &hardware() { return m_hardware; }

    TouchPanel &touchPanel() { return m_touchPanel; }

    /// Waits until the board has got a frame after `sinceUs` and shows this routing (1-based inputs).
    bool boardShows(const std::vector<int> &inputs, qint64 sinceUs = 0);
    /// Sends text to a control port. \return the reply
    QByteArray talk(sim::Wire wire, const QByteArray &text);
    /// The faults that the far ends have recorded, one a line.
    QByteArray faults() const;

private:
    sim::VirtualUnit m_hardware;
    TouchPanel m_touchPanel;
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
