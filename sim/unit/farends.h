#pragma once

#include "gpiolines.h"
#include "keypanel.h"
#include "lcdmodule.h"
#include "remotecontrol.h"
#include "switchingboard.h"

namespace sim
{
/// The hardware of the unit, and what joins it besides the wires: a GPIO line resets the LCD, and two others
/// switch its light. Not for several threads at once.
struct FarEnds {
    /// `ports` is 2..160. The observer hears of the events of all of them.
    FarEnds(int ports, const WireObserver &observer);
    FarEnds(const FarEnds &) = delete;
    FarEnds &operator=(const FarEnds &) = delete;

    /// Whether the light of the front panel is on.
    bool panelLight() const;

    SwitchingBoard board;
    LcdModule lcd;
    KeyPanel keys;
    RemoteControl remote;
    GpioLines gpio;
};
} // namespace sim
