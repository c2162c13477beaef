#include "gui.h"

#include "display.h"
#include "drawing.h"
#include "hooks.h"
#include "windowmanager.h"

#include <algorithm>

namespace
{
/// How long `GUI_Delay` lets what is invalid wait.
constexpr std::uint32_t PaintEveryMs = 10;
} // namespace

int GUI_Init()
{
    deleteAllWindows();
    GUI_X_Init();
    const int error = Display::start();
    createDesktop();
    resetDrawing();
    WIDGET_SetDefaultEffect_Simple();
    BUTTON_SetDefaultBkColor(BUTTON_RELEASED, GUI_WHITE);
    BUTTON_SetDefaultTextColor(BUTTON_RELEASED, GUI_BLACK);
    BUTTON_SetDefaultBkColor(BUTTON_PRESSED, GUI_BLACK);
    BUTTON_SetDefaultTextColor(BUTTON_PRESSED, GUI_WHITE);
    FRAMEWIN_SetDefaultBorderSize(1);
    FRAMEWIN_SetDefaultClientColor(GUI_WHITE);
    GUI_Clear();
    return error;
}

std::uint32_t GUI_GetTime()
{
    return GUI_X_GetTime();
}

void GUI_Delay(std::uint32_t ms)
{
    const std::uint32_t start = GUI_X_GetTime();
    GUI_Exec();
    for (std::uint32_t passed = 0; passed < ms; passed = GUI_X_GetTime() - start) {
        GUI_X_Delay(std::min(ms - passed, PaintEveryMs));
        GUI_Exec();
    }
}

int GUI_Exec()
{
    const int hasPainted = WM_Exec();
    if (hasPainted == 0) {
        GUI_X_ExecIdle();
    }
    return hasPainted;
}
