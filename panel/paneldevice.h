#pragma once

/// Opens a device (its path on the unit) for reading and writing into `fd`, in place of what was open there.
/// \return false when it cannot be opened, which is printed; `fd` is then -1
bool reopenDevice(int &fd, const char *device, int flags);

/// Closes what is open; `fd` is then -1.
void closeDevice(int &fd);
