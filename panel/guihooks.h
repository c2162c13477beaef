#pragma once

#include <cstdint>

/// What the port offers beyond the hooks that the graphics library calls. Nobody hears what it would log.
void GUI_X_Log(const char *text);
void GUI_X_ErrorOut(const char *text);

/// There is no remote view of the display. \return 0
int GUI_VNC_X_StartServer();
/// There is no touch panel. \return the argument
std::uint32_t GUI_TOUCH_X_ActivateX(std::uint32_t value);
