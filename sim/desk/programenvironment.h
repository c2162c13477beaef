#pragma once

#include "result.h"

#include <QProcessEnvironment>

namespace sim
{
struct Options;
class Screen;
struct UnitChoice;

/// Makes the environment in which the control program runs: this process's own, with the unit's devices,
/// ports and fonts in place of those of the machine, and with where the program shows itself, if that is not
/// settled already. A touchscreen in a window has its `screen` up before.
Result makeProgramEnvironment(const Options &options, const UnitChoice &choice, const Screen &screen,
                              QProcessEnvironment *environment);
} // namespace sim
