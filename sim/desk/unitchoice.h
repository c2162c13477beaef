#pragma once

#include "options.h"

#include <map>
#include <string>

namespace sim
{
/// Which unit a run is for.
struct UnitChoice {
    int ports = 0;                               ///< 2..160
    bool isFrontPanel = false;                   ///< operated from the front panel
    std::map<std::string, std::string> settings; ///< to be written into its settings file
};

/// Decides as the options say, else as the unit was last time, else as a new one; the failure says why there
/// is no such unit.
Result chooseUnit(const Options &options, UnitChoice *choice);
} // namespace sim
