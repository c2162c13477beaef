#pragma once

#include "mxsite.h"

#include <QFile>
#include <QSettings>

/// One of the unit's INI files; `devicePath` is absolute, as on the device.
class IniFile : public QSettings
{
public:
    explicit IniFile(const char *devicePath)
        : QSettings(QFile::decodeName(MxSite::path(devicePath)), QSettings::IniFormat)
    {
    }
};
