#pragma once

#include "mxshm.h"

#include <array>

/// Which matrices the front panel is for, and when it is used. Any thread.

/// The largest matrix that the panel has keys for.
constexpr int PanelMaxPort = 40;

constexpr bool fitsPanel(int ports)
{
    return ports <= PanelMaxPort;
}

/// Whether the unit is operated from its front panel, in place of the touchscreen: the setting `keypad` is
/// above 0, and the panel has keys for the matrix.
bool hasFrontPanel(const MxShm &shm);

/// The ports of the record, as many of them as the panel has keys for.
int panelPorts();

constexpr int LiveMap = 0; ///< its slot

/// The input of each output that the panel has a key for.
using PanelMap = std::array<quint16, PanelMaxPort>;
