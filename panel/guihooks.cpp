// The operating system as the graphics library sees it: a clock, and no more.

#include "guihooks.h"

#include "hooks.h"
#include "tickcount.h"

namespace
{
/// Milliseconds, monotonic; wraps.
std::uint32_t OS_TimeMS()
{
    return GetTickCount();
}
} // namespace

std::uint32_t GUI_X_GetTime()
{
    return OS_TimeMS();
}

void GUI_X_Delay(std::uint32_t ms)
{
    const std::uint32_t end = OS_TimeMS() + ms;
    while (static_cast<std::int32_t>(end - OS_TimeMS()) > 0) {
    }
}

void GUI_X_Init() {}
void GUI_X_ExecIdle() {}
void GUI_X_Log(const char *) {}
void GUI_X_Warn(const char *) {}
void GUI_X_ErrorOut(const char *) {}

int GUI_VNC_X_StartServer()
{
    return 0;
}

std::uint32_t GUI_TOUCH_X_ActivateX(std::uint32_t value)
{
    return value;
}
