#include "temperature.h"

#include "devicefiles.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr char SensorFile[] = "/sys/devices/virtual/thermal/thermal_zone0/temp";
}

Temperature readTemperature()
{
    unsigned char millidegrees[16];
    const int count = DeviceFiles::read(SensorFile, millidegrees, sizeof millidegrees).count;
    Temperature degrees = {};
    std::memcpy(degrees.text, millidegrees, static_cast<size_t>(std::max(0, std::min(count, 2))));
    return degrees;
}
