#pragma once

#include <cstddef>

/// Whole-file helpers for the small files and device nodes of the unit. Paths are absolute, as on the device.
/// Any thread; no lock. Failures are the negative result of the call that failed.
namespace DeviceFiles
{
/// Reads at most `len` bytes with one read. A file that cannot be opened zero-fills `buf`, prints "read
/// err\r" and gives the negative result. \return bytes read
int read(const char *path, unsigned char *buf, int len);

/// Writes over the start of the file, which is created with mode 0666 when missing and never truncated, and
/// flushes it to the device. \return bytes written, or the negative result of the open
int write(const char *path, const unsigned char *buf, int len);

/// Copies `source` over the start of `target`, 1024 bytes at a time; what is missing is created. With
/// `truncate` the target is emptied first. Nothing happens when either cannot be opened.
void copy(const char *source, const char *target, bool truncate);

/// True when something of that name exists.
bool exists(const char *path);

/// Makes the folder with mode 0775.
void makeFolder(const char *path);

/// Removes the temporary and lock files that an interrupted save may have left beside `path` ("rm path.*").
void removeLeftovers(const char *path);

/// Runs "sync" twice, so that what was written has reached the flash.
void syncToFlash();
} // namespace DeviceFiles
