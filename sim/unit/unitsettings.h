#pragma once

#include <map>
#include <string>

namespace sim
{
/// Where the settings file of the unit below `root` is.
std::string settingsPath(const std::string &root);

/// An integer of the settings file, such as "system/port"; `fallback` when the file or the key is missing, 0
/// when the value is no number.
int readSetting(const std::string &root, const std::string &key, int fallback);

/// Sets these keys and keeps the others. False when the file cannot be written.
bool writeSettings(const std::string &root, const std::map<std::string, std::string> &values);
} // namespace sim
