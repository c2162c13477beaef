#include "inifile.h"

#include "mxsite.h"

#include <QFile>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/// Qt takes a file whose reading failed for an empty one and says nothing. A file in which it finds no key is
/// read a second time, which Qt does only when it is newer.
void readAgainIfEmpty(QSettings &file, const QByteArray &place)
{
    if (file.allKeys().isEmpty() && ::utimensat(AT_FDCWD, place.constData(), nullptr, 0) == 0) {
        file.sync();
    }
}
} // namespace

IniFile::IniFile(const char *devicePath)
    : QSettings(QFile::decodeName(MxSite::path(devicePath)), QSettings::IniFormat)
    , m_devicePath(devicePath)
{
    readAgainIfEmpty(*this, MxSite::path(devicePath));
}

FileResult IniFile::loaded()
{
    // The one thing that Qt refuses without asking the system is a folder in the file's place.
    errno = EISDIR;
    sync();
    return status() == AccessError ? fileFailure("read", m_devicePath) : FileResult{FileResult::Done, 0, {}};
}

IniScratch::IniScratch(const char *devicePath)
    : m_devicePath(devicePath)
    , m_place(MxSite::path(devicePath))
    , m_scratch(m_place + ".new") // "rm path.*" removes what an interrupted save has left of it
{
    if (::link(m_place.constData(), m_scratch.constData()) != 0 && errno != ENOENT) {
        m_reason = errno == EPERM ? EISDIR : errno; // of a folder it says that
    }
}

IniScratch::~IniScratch()
{
    ::unlink(m_scratch.constData());
}

IniUpdate::IniUpdate(const char *devicePath)
    : IniScratch(devicePath)
    , QSettings(QFile::decodeName(m_scratch), QSettings::IniFormat)
{
    readAgainIfEmpty(*this, m_scratch);
}

FileResult IniUpdate::saved()
{
    errno = m_reason;
    if (m_reason == 0) {
        sync();
    }
    if (m_reason == 0 && status() != AccessError) {
        // Of a full disk Qt says nothing when what it wrote last did not fit.
        errno = ENOSPC;
        if (isWhole() && ::rename(m_scratch.constData(), m_place.constData()) == 0) {
            return {FileResult::Done, 0, {}};
        }
    }
    return fileFailure("write", m_devicePath);
}

/// Every key has a line, whatever is in its value.
bool IniUpdate::isWhole() const
{
    QFile file(fileName());
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray text = file.readAll();
    int keys = 0;
    for (const QByteArray &line : text.split('\n')) {
        keys += !line.isEmpty() && !line.startsWith('[');
    }
    return text.endsWith('\n') && keys == allKeys().size();
}
