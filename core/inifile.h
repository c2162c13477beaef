#pragma once

#include "fileresult.h"

#include <QSettings>

/// One of the unit's INI files. A missing one, and one that cannot be read, are as good as empty.
class IniFile : public QSettings
{
public:
    /// `devicePath` is absolute, as on the device, and outlives the object.
    explicit IniFile(const char *devicePath);

    /// Whether the file could be read, if there is one.
    FileResult loaded() { return synchronised("read"); }
    /// Brings what was set to the file.
    FileResult saved() { return synchronised("write"); }

private:
    FileResult synchronised(const char *what);

    const char *const m_devicePath;
};
