#pragma once

#include "input.h"
#include "mxshm.h"

#include <QByteArray>
#include <QTemporaryDir>

/// A unit's folder in memory, where the product finds it by MX_ROOT. What the product has the shell do beside
/// (to remove leftovers, to flush all disks) is left out, and no sleep takes time.
class FuzzUnit
{
public:
    FuzzUnit();

    /// Makes the file, or takes it away when it would be empty; paths are those on the device.
    void write(const char *path, const QByteArray &content);
    QByteArray read(const char *path) const;
    /// Gives the file a date of its own. QSettings does not read again what has size and date of before.
    void touch(const char *path);

    /// Makes a pipe in place of a device and opens the far end of it.
    int pipe(const char *path) const;

private:
    QTemporaryDir m_folder;
    int m_date = 0;
};

/// All that is in a pipe or a socket at the moment.
QByteArray readAll(int descriptor);

/// The control object without a unit: no devices, no files, no other threads. \return its record, anew with
/// each call: ports and scenes, all else zero
MxShm &newRecord(int ports, int scenes);

/// Writes as a process does that respects nothing: any bytes over any field, or across several.
void disturb(MxShm &record, Input &input);
