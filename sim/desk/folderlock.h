#pragma once

#include "devicenode.h"

#include <QString>

/// Keeps a folder for one mxsim at a time.
class FolderLock
{
public:
    /// Makes the folder where it is missing and locks this file in it until the object or the process ends.
    /// Returns an empty text, or one line that says why the folder cannot be had.
    QString acquire(const QString &folder, const QString &lockFile = "mxsim.lock");

private:
    sim::Descriptor m_file;
};
