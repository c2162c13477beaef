#include "inifile.h"

#include "mxsite.h"

#include <QFile>
#include <cerrno>

IniFile::IniFile(const char *devicePath)
    : QSettings(QFile::decodeName(MxSite::path(devicePath)), QSettings::IniFormat)
    , m_devicePath(devicePath)
{
}

FileResult IniFile::synchronised(const char *what)
{
    // The one thing that Qt refuses without asking the system is a folder in the file's place.
    errno = EISDIR;
    sync();
    return status() == AccessError ? fileFailure(what, m_devicePath) : FileResult{FileResult::Done, 0, {}};
}
