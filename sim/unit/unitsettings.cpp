#include "unitsettings.h"

#include <QSettings>

namespace sim
{
std::string settingsPath(const std::string &root)
{
    return root + "/home/app/config/setup.ini";
}

int readSetting(const std::string &root, const std::string &key, int fallback)
{
    const QSettings settings(QString::fromStdString(settingsPath(root)), QSettings::IniFormat);
    return settings.value(QString::fromStdString(key), fallback).toInt();
}

bool writeSettings(const std::string &root, const std::map<std::string, std::string> &values)
{
    QSettings settings(QString::fromStdString(settingsPath(root)), QSettings::IniFormat);
    for (const auto &[key, value] : values) {
        settings.setValue(QString::fromStdString(key), QString::fromStdString(value));
    }
    settings.sync();
    return settings.status() == QSettings::NoError;
}
} // namespace sim
