#pragma once

#include "result.h"

#include <map>
#include <string>

namespace sim
{
/// The files of the unit below `root`: what a unit keeps (home, etc), and what its kernel has to say of the
/// light and the temperature. Any thread.
class UnitFiles
{
public:
    explicit UnitFiles(const std::string &root);

    /// Makes the folders where they are missing, and the kernel's files anew. What a unit keeps stays as it
    /// is.
    Result make() const;

    /// Where the settings file is.
    std::string settingsPath() const;

    /// An integer of the settings file, such as "system/port"; 0 when the file or the key is missing, or the
    /// value is no number.
    int setting(const std::string &key) const;

    /// Sets keys of the settings file, such as {"system/port", "16"}, and keeps the others.
    Result writeSettings(const std::map<std::string, std::string> &values) const;

    /// The brightness that the program set last, 0 at first; -1 when it cannot be read.
    int backlight() const;

    /// What the thermometer says from now on, such as "45123\n".
    Result setTemperature(const std::string &text) const;

private:
    Result writeFile(const char *path, const std::string &text) const;

    const std::string m_root;
};
} // namespace sim
