#pragma once

#include "descriptor.h"
#include "result.h"

namespace sim
{
/// Keeps a folder for one mxsim at a time.
class FolderLock
{
public:
    /// Makes the folder where it is missing and locks this file in it until the object or the process ends.
    Result acquire(const QString &folder, const QString &lockFile = "mxsim.lock");

private:
    Descriptor m_file;
};
} // namespace sim
