#pragma once

#include "filedescriptor.h"

/// Lines of the GPIO device that the control side drives.
enum class GpioLine {
    BacklightPower = 0,
    LcdReset = 1, ///< of the front panel's LCD; low resets it
    PanelLight = 2,
    PanelLight2 = 3, ///< always as the one before
    Buzzer = 4,
    Switching = 8,       ///< high while a switch frame is built and sent
    SceneIndicator = 9,  ///< front panel: high from the SCENE page on, low from the SWITCH page on
    SwitchIndicator = 10 ///< the other way round
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
