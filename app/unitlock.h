#pragma once

#include "filedescriptor.h"
#include "mxsite.h"

#include <QThread>
#include <fcntl.h>
#include <sys/file.h>

/// The right to run on the unit, held until the process ends, however that comes. It is a lock on the folder
/// of the settings. A second program would clear the record under the first, which then stores and sends the
/// empty routing.
class UnitLock
{
public:
    /// Waits up to a second for a program that is about to end.
    UnitLock()
        : m_folder(::open(MxSite::path("/home/app/config").constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        for (int tries = 0; isTaken() && tries < 20; ++tries) {
            QThread::msleep(50);
        }
    }

    /// Whether another program has it. Without the folder there is nothing to hold.
    bool isTaken() const { return m_folder.get() >= 0 && ::flock(m_folder.get(), LOCK_EX | LOCK_NB) != 0; }

private:
    const FileDescriptor m_folder;
};
