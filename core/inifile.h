#pragma once

#include "fileresult.h"

#include <QSettings>

/// One of the unit's INI files, to be read. A missing one, and one that cannot be read, are as good as empty.
class IniFile : public QSettings
{
public:
    /// `devicePath` is absolute, as on the device, and outlives the object.
    explicit IniFile(const char *devicePath);

    /// Whether the file could be read, if there is one.
    FileResult loaded();

private:
    const char *const m_devicePath;
};

/// A second name of a file for as long as it lives: a link, so that whoever replaces the second leaves the
/// first. A missing file has none.
class IniScratch
{
protected:
    explicit IniScratch(const char *devicePath);
    IniScratch(const IniScratch &) = delete;
    IniScratch &operator=(const IniScratch &) = delete;
    ~IniScratch();

    const char *const m_devicePath;
    const QByteArray m_place;
    const QByteArray m_scratch;
    int m_reason = 0; ///< errno, when there is a file and it could not be linked
};

/// An INI file to be changed: what is set comes into the file by `saved`, all of it or nothing.
class IniUpdate : private IniScratch, public QSettings
{
public:
    explicit IniUpdate(const char *devicePath);

    /// Brings what was set to the file, beside what it has; when that fails the file stays as it is.
    FileResult saved();

private:
    bool isWhole() const;
};
