#include "temperature.h"

#include "devicefiles.h"

#include <algorithm>

namespace
{
constexpr char SensorFile[] = "/sys/devices/virtual/thermal/thermal_zone0/temp";
}

Temperature readTemperature()
{
    unsigned char millidegrees[16];
    const int count = DeviceFiles::read(SensorFile, millidegrees, sizeof millidegrees);
    Temperature degrees = {};
    std::copy_n(millidegrees, std::max(0, std::min(count, 2)), degrees.text);
    return degrees;
}
