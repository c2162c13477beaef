#include "folderlock.h"

#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <sys/file.h>

namespace sim
{
Result FolderLock::acquire(const QString &folder, const QString &lockFile)
{
    QDir().mkpath(folder);
    m_file.reset(
        ::open(QFile::encodeName(folder + "/" + lockFile).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
    if (m_file.get() < 0) {
        return systemFailure("cannot use the folder " + folder);
    }
    if (::flock(m_file.get(), LOCK_EX | LOCK_NB) < 0) {
        return {QString("the folder %1 is in use by another mxsim").arg(folder)};
    }
    return {};
}
} // namespace sim
