#pragma once

#include "fileresult.h"

/// Whole-file helpers for the small files and device nodes of the unit. Paths are absolute, as on the device.
/// Any thread; no lock.
namespace DeviceFiles
{
/// Reads at most `len` bytes. What a missing or short file does not fill becomes zero; a file
/// that could not be read leaves `buf` alone. One that cannot be opened prints "read err\r".
FileResult read(const char *path, unsigned char *buf, int len);

/// Writes over the start of the file, which is created with mode 0666 when missing and never truncated, and
/// flushes it to the device: what was written outlives a power cut, and so does the file's name.
FileResult write(const char *path, const unsigned char *buf, int len);

/// Copies `source`, once it was read whole, over the start of `target`, and flushes it as `write`
/// does; each is created when missing. A source of 16 MiB or more fails. With `truncate` the target ends
/// where the source does.
FileResult copy(const char *source, const char *target, bool truncate);

/// True when something of that name exists.
bool exists(const char *path);

/// Makes the folder with mode 0775, unless there is something of that name.
FileResult makeFolder(const char *path);

/// Removes the temporary and lock files that an interrupted save may have left beside `path` ("rm path.*").
void removeLeftovers(const char *path);

/// Runs "sync" twice, so that what was written has reached the flash.
void syncToFlash();
} // namespace DeviceFiles
