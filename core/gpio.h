#pragma once

#include "filedescriptor.h"

/// Lines of the GPIO device that the control side drives.
enum class GpioLine {
    BacklightPower = 0,
    Buzzer = 4,
    Switching = 8, ///< high while a switch frame is built and sent
};

/// The GPIO character device "/dev/gpiodev". Any thread.
class Gpio
{
public:
    void open();
    /// Sets `line` to `level` (0 or 1): the level is the control call's request, the line its argument.
    /// \return the control call's result
    int write(int line, int level) const;
    int write(GpioLine line, int level) const { return write(static_cast<int>(line), level); }

private:
    FileDescriptor m_device;
};
