#include "settingsstore.h"

#include "devicefiles.h"
#include "ethernet.h"
#include "inifile.h"
#include "mxshm.h"

#include <algorithm>
#include <iterator>

namespace
{
constexpr char SetupFile[] = "/home/app/config/setup.ini";
constexpr int DefaultBaudrate = 115200;
constexpr int Baudrates[] = {300,   600,   1200,  2400,  4800,   9600,  19200,
                             38400, 57600, 76800, 96000, 115200, 230400};

constexpr const char *InterfaceKeys[3] = {"ADDRESS", "NETMASK", "GATEWAY"};

int number(const QSettings &file, const char *key)
{
    return file.value(QLatin1String(key)).toInt();
}

QByteArray text(const QSettings &file, const QString &key)
{
    return file.value(key).toString().toLatin1();
}

/// The texts of the file have always been formatted on their way in: a doubled percent sign stands for one.
QByteArray formatted(const QSettings &file, const char *key, const char *whenEmpty)
{
    const QByteArray value = text(file, QLatin1String(key)).replace("%%", "%");
    // One that begins with NUL would be empty in the record.
    return qstrlen(value) == 0 ? QByteArray(whenEmpty) : value;
}

int acceptedBaudrate(int baudrate)
{
    const bool known = std::find(std::begin(Baudrates), std::end(Baudrates), baudrate) != std::end(Baudrates);
    return known ? baudrate : DefaultBaudrate;
}

void loadInterface(MxShm &shm, const EthernetInterface &interface)
{
    IniFile file(interface.file);
    // The defaults go as a group: an address of its own never gets a foreign netmask or gateway.
    const bool present = file.contains(QStringLiteral("IP/ADDRESS"));
    for (int i = 0; i < 3; ++i) {
        const QString key = QStringLiteral("IP/") + QLatin1String(InterfaceKeys[i]);
        (shm.*interface.fields[i]).set(present ? text(file, key).constData() : interface.defaults[i]);
    }
    file.loaded().report();
}

void saveInterface(const MxShm &shm, const EthernetInterface &interface)
{
    DeviceFiles::removeLeftovers(interface.file);
    IniUpdate file(interface.file);
    file.beginGroup(QStringLiteral("IP"));
    for (int i = 0; i < 3; ++i) {
        const auto value = (shm.*interface.fields[i]).get();
        file.setValue(QLatin1String(InterfaceKeys[i]), QString::fromLatin1(value));
    }
    file.endGroup();
    file.saved().report();
}
} // namespace

void SettingsStore::load(MxShm &shm)
{
    IniFile file(SetupFile);
    shm.port = qBound<int>(MxMinPort, number(file, "system/port"), MxMaxPort);
    shm.scene = qBound<int>(MxMinScene, number(file, "system/scene"), MxMaxScene);
    shm.beep = number(file, "system/beep");
    shm.backlight = number(file, "system/backlight");
    shm.sleep = number(file, "system/sleep");
    shm.keypad = number(file, "system/keypad");
    shm.baudrate = acceptedBaudrate(number(file, "system/baudrate"));
    shm.images.set(formatted(file, "system/images", "default"));
    shm.language.set(formatted(file, "system/language", "en"));
    file.loaded().report();
    for (const EthernetInterface &interface : EthernetInterfaces) {
        loadInterface(shm, interface);
    }
}

void SettingsStore::save(const MxShm &shm)
{
    DeviceFiles::removeLeftovers(SetupFile);
    {
        IniUpdate file(SetupFile);
        file.beginGroup(QStringLiteral("system"));
        file.setValue(QStringLiteral("beep"), int(shm.beep));
        file.setValue(QStringLiteral("backlight"), int(shm.backlight));
        file.setValue(QStringLiteral("sleep"), int(shm.sleep));
        file.endGroup();
        file.saved().report();
    }
    for (const EthernetInterface &interface : EthernetInterfaces) {
        saveInterface(shm, interface);
    }
    DeviceFiles::syncToFlash();
}
