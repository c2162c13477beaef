#include "backlight.h"

#include "devicefiles.h"
#include "gpio.h"
#include "mxshm.h"

namespace
{
constexpr char BrightnessFile[] = "/sys/class/backlight/backlight.8/brightness";
constexpr int MaxLevel = 7;

/// One more than the setting, whatever number the record holds.
int settingsLevel()
{
    return static_cast<int>(static_cast<quint32>(g_mxConfig->backlight) + 1);
}
} // namespace

Backlight::Backlight(const Gpio &gpio)
    : m_gpio(gpio)
{
}

void Backlight::light(int level) const
{
    const int brightness = level >= 0 && level <= MaxLevel ? level : MaxLevel;
    const auto digit = static_cast<unsigned char>('0' + brightness);
    // Not every screen has one; whoever looks at it sees whether it is lit.
    const FileResult ignored = DeviceFiles::write(BrightnessFile, &digit, 1);
    Q_UNUSED(ignored)
    m_gpio.write(GpioLine::BacklightPower, brightness > 0 ? 1 : 0);
}

void Backlight::sleep()
{
    m_asleep = true;
    light(0);
}

void Backlight::wake()
{
    m_asleep = false;
    showLevel();
}

void Backlight::showLevel() const
{
    if (!m_asleep) {
        light(settingsLevel());
    }
}
