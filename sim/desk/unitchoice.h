#pragma once

#include "options.h"

#include <map>
#include <string>

/// Which unit a run is for.
struct UnitChoice {
    int ports = 0;                               ///< 2..160
    bool isFrontPanel = false;                   ///< operated from the front panel
    std::map<std::string, std::string> settings; ///< to be written into its settings file
};

/// Decides as the options say, else as the unit was last time, else as a new one. Returns an empty text, or
/// one line that says why there is no such unit.
QString chooseUnit(const Options &options, UnitChoice *choice);
