#include "input.h"
#include "repaint.h"

namespace
{
constexpr int MostWindows = 40;
constexpr int MostNested = 3;

Input *input; ///< null: callbacks only paint
std::vector<WM_Handle> windows;
int nested = 0;

const std::uint8_t Dots[] = {0xA5, 0x3C, 0x81, 0x7E, 0xFF, 0x00, 0x12, 0x99};
const GUI_Color Colors[] = {GUI_BLACK, GUI_WHITE};
const GUI_Bitmap Picture = {8, 8, 1, 1, Dots, Colors, 2};
const GUI_Bitmap *const Pictures[] = {nullptr, &Picture};
const GUI_Font *const Fonts[] = {&GUI_Font6x8, &GUI_Font16};
const BUTTON_State States[] = {BUTTON_RELEASED, BUTTON_PRESSED};
const WIDGET_Effect Wide = {5};
const WIDGET_Effect *const Effects[] = {&WIDGET_Effect_None, &WIDGET_Effect_Simple, &Wide};

void (*const Acts[])(WM_Handle) = {WM_DeleteWindow,  WM_HideWindow,   WM_ShowWindow,
                                   WM_DisableWindow, WM_EnableWindow, WM_BringToTop,
                                   WM_BringToBottom, WM_SetFocus,     WM_InvalidateWindow};
void (*const Numbers[])(WM_Handle, int) = {BUTTON_SetPressed,      BUTTON_SetTextAlign, EDIT_SetInsertMode,
                                           EDIT_SetCursorAtChar,   EDIT_SetTextAlign,   FRAMEWIN_SetTitleVis,
                                           FRAMEWIN_SetBorderSize, TEXT_SetTextAlign,   EDIT_AddKey};
void (*const Places[])(WM_Handle, int, int) = {WM_MoveTo, WM_MoveBy, WM_SetSize};
void (*const Texts[])(WM_Handle, const char *) = {BUTTON_SetText, EDIT_SetText, TEXT_SetText,
                                                  FRAMEWIN_SetText};
void (*const FontsOf[])(WM_Handle, const GUI_Font *) = {BUTTON_SetFont, EDIT_SetFont, TEXT_SetFont,
                                                        FRAMEWIN_SetFont};
void (*const ColorsOf[])(WM_Handle, GUI_Color) = {EDIT_SetBkColor, EDIT_SetTextColor, TEXT_SetBkColor,
                                                  TEXT_SetTextColor, FRAMEWIN_SetClientColor};
void (*const ColorsOfState[])(WM_Handle, BUTTON_State, GUI_Color) = {BUTTON_SetBkColor, BUTTON_SetTextColor};

template <class T, std::size_t N>
T pick(T const (&table)[N])
{
    return table[input->below(N)];
}

void operate();

/// Draws all of the window, each one in its own way; then other things may happen.
void plainProc(WM_Message &message)
{
    if (message.id == WM_PAINT) {
        const GUI_Rect all = WM_GetBounds(message.window);
        GUI_SetBkColor(Colors[message.window % 2]);
        GUI_SetColor(Colors[1 - message.window % 2]);
        GUI_Clear();
        GUI_DrawRect({all.x0 + 2, all.y0 + 2, all.x1 - 2, all.y1 - 2});
        GUI_DrawLine(-9, -4, 60, 40);
        GUI_DispStringInRect("Mx 1>2", all, message.window % 11);
        GUI_DrawBitmap(Picture, all.x1 - 10, 3);
        GUI_InvertRect({5, 5, 9, all.y1 - 9});
    }
    operate();
}

void widgetProc(WM_Message &message)
{
    WM_DefaultProc(message);
    operate();
}

void create(WM_Handle parent, int kind)
{
    const int flags = input->below(4);
    const int x = input->place();
    const int y = input->place();
    const int width = input->place();
    const int height = input->place();
    windows.push_back(kind == 0   ? WM_CreateWindow(x, y, width, height, parent, flags, plainProc)
                      : kind == 1 ? BUTTON_CreateEx(x, y, width, height, parent, flags, 1)
                      : kind == 2 ? EDIT_CreateEx(x, y, width, height, parent, flags, 1, 20)
                      : kind == 3 ? TEXT_CreateEx(x, y, width, height, parent, flags, 1, "Text")
                                  : FRAMEWIN_Create("Frame", nullptr, flags, x, y, width, height));
    if (kind > 0) {
        WM_SetCallback(windows.back(), widgetProc);
    }
    if (windows.size() > MostWindows) {
        const WM_Handle oldest = windows[1];
        windows.erase(windows.begin() + 1);
        WM_DeleteWindow(oldest);
    }
}

void actOn(WM_Handle window)
{
    switch (input->below(16)) {
    case 0:
        return pick(Numbers)(window, input->place());
    case 1:
        return pick(Texts)(window, input->bytes());
    case 2:
        return pick(FontsOf)(window, pick(Fonts));
    case 3:
        return pick(ColorsOf)(window, pick(Colors));
    case 4: {
        const auto set = pick(ColorsOfState);
        const BUTTON_State state = pick(States);
        return set(window, state, pick(Colors));
    }
    case 5: {
        const BUTTON_State state = pick(States);
        return BUTTON_SetBitmap(window, state, pick(Pictures));
    }
    case 6:
        return WIDGET_SetEffect(window, pick(Effects));
    case 7: {
        const int x = input->place();
        const int y = input->place();
        return WM_InvalidateRect(window, {x, y, x / 2 + 64, y / 2 + 64});
    }
    case 8: {
        const int key = input->word() % 0x120;
        GUI_SendKeyMsg(key, 1);
        return void(GUI_SendKeyMsg(key, 0));
    }
    case 9:
        WM_SetDesktopColor(pick(Colors));
        return void(WM_Exec());
    case 10:
    case 11: {
        const auto put = pick(Places);
        const int x = input->place();
        return put(window, x, input->place());
    }
    case 12:
    case 13:
        return create(window, input->below(5));
    default:
        return pick(Acts)(window);
    }
}

void operate()
{
    if (input != nullptr && nested < MostNested && !input->isEmpty()) {
        ++nested;
        actOn(windows[std::size_t(input->byte()) % windows.size()]);
        --nested;
    }
}
} // namespace

/// Operations in batches, also from within callbacks. Behind each batch what is shown is what painting all of
/// it anew shows.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input bytes(data, size);
    GUI_Init();
    windows.assign(1, WM_GetDesktopWindow());
    while (!bytes.isEmpty()) {
        input = &bytes;
        for (int operations = 1 + bytes.below(16); operations > 0; --operations) {
            operate();
        }
        input = nullptr;
        requireWholePicture();
    }
    return 0;
}
