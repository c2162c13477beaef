#include "folderlock.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>

QString FolderLock::acquire(const QString &folder, const QString &lockFile)
{
    QDir().mkpath(folder);
    m_file.reset(
        open(QFile::encodeName(folder + "/" + lockFile).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
    if (m_file.get() < 0) {
        return QString("cannot use the folder %1: %2").arg(folder, strerror(errno));
    }
    if (flock(m_file.get(), LOCK_EX | LOCK_NB) < 0) {
        return QString("the folder %1 is in use by another mxsim").arg(folder);
    }
    return {};
}
