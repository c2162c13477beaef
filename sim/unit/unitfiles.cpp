#include "unitfiles.h"

#include <QSettings>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace sim
{
namespace
{
constexpr const char *Folders[] = {"/home/app/config",
                                   "/home/app/data",
                                   "/home/www",
                                   "/etc",
                                   "/dev",
                                   "/sys/class/backlight/backlight.8",
                                   "/sys/devices/virtual/thermal/thermal_zone0"};
constexpr char SettingsFile[] = "/home/app/config/setup.ini";
constexpr char BrightnessFile[] = "/sys/class/backlight/backlight.8/brightness";
constexpr char SensorFile[] = "/sys/devices/virtual/thermal/thermal_zone0/temp";

Result makeFolder(const std::string &path)
{
    std::error_code failure;
    std::filesystem::create_directories(path, failure);
    const std::string text = "cannot make the folder " + path + ": " + failure.message();
    return failure ? Result{QString::fromStdString(text)} : Result();
}

Result cannotWrite(const std::string &path)
{
    return {"cannot write " + QString::fromStdString(path)};
}
} // namespace

UnitFiles::UnitFiles(const std::string &root)
    : m_root(root)
{
}

Result UnitFiles::make() const
{
    Result made;
    for (const char *folder : Folders) {
        made = made.then([&] { return makeFolder(m_root + folder); });
    }
    return made.then([this] { return writeFile(BrightnessFile, "0\n"); }).then([this] {
        return setTemperature("45123\n");
    });
}

std::string UnitFiles::settingsPath() const
{
    return m_root + SettingsFile;
}

int UnitFiles::setting(const std::string &key) const
{
    const QSettings settings(QString::fromStdString(settingsPath()), QSettings::IniFormat);
    return settings.value(QString::fromStdString(key)).toInt();
}

Result UnitFiles::writeSettings(const std::map<std::string, std::string> &values) const
{
    QSettings settings(QString::fromStdString(settingsPath()), QSettings::IniFormat);
    for (const auto &[key, value] : values) {
        settings.setValue(QString::fromStdString(key), QString::fromStdString(value));
    }
    settings.sync();
    return settings.status() == QSettings::NoError ? Result() : cannotWrite(settingsPath());
}

int UnitFiles::backlight() const
{
    std::ifstream file(m_root + BrightnessFile);
    int level = -1;
    return file >> level ? level : -1;
}

Result UnitFiles::setTemperature(const std::string &text) const
{
    return writeFile(SensorFile, text);
}

Result UnitFiles::writeFile(const char *path, const std::string &text) const
{
    std::ofstream file(m_root + path, std::ios::trunc);
    file << text;
    return file.flush() ? Result() : cannotWrite(m_root + path);
}
} // namespace sim
