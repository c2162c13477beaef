#include "gpio.h"

#include "mxsite.h"

#include <fcntl.h>
#include <sys/ioctl.h>

void Gpio::open()
{
    m_device.reset(::open(MxSite::path("/dev/gpiodev").constData(), O_RDWR | O_CLOEXEC));
}

int Gpio::write(int line, int level) const
{
    return ::ioctl(m_device.get(), static_cast<unsigned long>(level), line);
}
