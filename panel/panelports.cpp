#include "panelports.h"

#include <algorithm>

bool hasFrontPanel(const MxShm &shm)
{
    return shm.keypad > 0 && fitsPanel(portCount(shm));
}

int panelPorts()
{
    return std::min(portCount(*g_mxConfig), PanelMaxPort);
}
