#pragma once

struct MxShm;

/// The settings file and the two network files: "/home/app/config/setup.ini", "/etc/eth0.conf" and
/// "/etc/eth1.conf". What could not be read or written is said on standard output, a line for each file. Runs
/// on the caller's thread; no lock.
namespace SettingsStore
{
/// Fills the settings and addresses of the record. What is missing or out of bounds gets its default.
void load(MxShm &shm);

/// Writes back what can be changed on the unit: buzzer, backlight, sleep and the addresses. All other keys of
/// the files stay as they are. The files have reached the flash when this returns.
void save(const MxShm &shm);
} // namespace SettingsStore
