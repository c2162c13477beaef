#include "input.h"
#include "repaint.h"

#include <iterator>

namespace
{
constexpr int MostWindows = 40;
constexpr int MostNested = 3;

Input *input; ///< null: callbacks only paint
std::vector<WM_Handle> windows;
int nested = 0;
const std::uint8_t Dots[] = {0xA5, 0x3C, 0x81, 0x7E, 0xFF, 0x00, 0x12, 0x99};
const GUI_Color Palette[] = {GUI_BLACK, GUI_WHITE};
const GUI_Bitmap Bitmap = {8, 8, 1, 1, Dots, Palette, 2};

WM_Handle any()
{
    return windows[std::size_t(input->byte()) % windows.size()];
}

GUI_Color color()
{
    return input->below(2) == 0 ? GUI_BLACK : GUI_WHITE;
}

GUI_Rect rect()
{
    const int x = input->place();
    const int y = input->place();
    return {x, y, x < 1000 ? x + input->byte() : x, input->place()};
}

const GUI_Font *font()
{
    return input->below(2) == 0 ? &GUI_Font6x8 : &GUI_Font16;
}

void operate();

/// Draws all of the window, each one its own way; then other things may happen.
void plainProc(WM_Message &message)
{
    if (message.id == WM_PAINT) {
        const GUI_Rect all = WM_GetBounds(message.window);
        GUI_SetBkColor(message.window % 2 == 0 ? GUI_WHITE : GUI_BLACK);
        GUI_SetColor(message.window % 2 == 0 ? GUI_BLACK : GUI_WHITE);
        GUI_Clear();
        GUI_DrawRect({all.x0 + 2, all.y0 + 2, all.x1 - 2, all.y1 - 2});
        GUI_DrawLine(all.x0, all.y0, all.x1, all.y1);
        GUI_DispStringInRect("Mx 1>2", all, message.window % 11);
        GUI_DrawBitmap(Bitmap, all.x1 - 10, 3);
        GUI_InvertRect({5, 5, 9, all.y1 - 9});
    }
    operate();
}

void widgetProc(WM_Message &message)
{
    WM_DefaultProc(message);
    operate();
}

void create()
{
    const int kind = input->below(5);
    const WM_Handle parent = any();
    const int flags = input->below(4);
    const int x = input->place();
    const int y = input->place();
    const int width = input->place();
    const int height = input->place();
    const WM_Handle made = kind == 0   ? WM_CreateWindow(x, y, width, height, parent, flags, plainProc)
                           : kind == 1 ? BUTTON_CreateEx(x, y, width, height, parent, flags, kind)
                           : kind == 2
                               ? EDIT_CreateEx(x, y, width, height, parent, flags, kind, input->byte())
                           : kind == 3 ? TEXT_CreateEx(x, y, width, height, parent, flags, kind, "Text")
                                       : FRAMEWIN_Create("Frame", widgetProc, flags, x, y, width, height);
    if (kind > 0) {
        WM_SetCallback(made, widgetProc);
    }
    if (windows.size() == MostWindows) {
        WM_DeleteWindow(windows[1]);
        windows.erase(windows.begin() + 1);
    }
    windows.push_back(made);
}

void setText()
{
    const WM_Handle window = any();
    const QByteArray text = input->bytes();
    BUTTON_SetText(window, text);
    EDIT_SetText(window, text);
    TEXT_SetText(window, text);
    FRAMEWIN_SetText(window, text);
}

void setLook()
{
    const WM_Handle window = any();
    const auto state = static_cast<BUTTON_State>(input->below(2));
    const GUI_Color wanted = color();
    static const WIDGET_Effect wide = {5};
    const WIDGET_Effect *const effects[] = {&WIDGET_Effect_None, &WIDGET_Effect_Simple, &wide};
    switch (input->below(8)) {
    case 0:
        BUTTON_SetBkColor(window, state, wanted);
        EDIT_SetBkColor(window, wanted);
        TEXT_SetBkColor(window, wanted);
        return FRAMEWIN_SetClientColor(window, wanted);
    case 1:
        BUTTON_SetTextColor(window, state, wanted);
        EDIT_SetTextColor(window, wanted);
        return TEXT_SetTextColor(window, wanted);
    case 2:
        BUTTON_SetFont(window, font());
        EDIT_SetFont(window, font());
        TEXT_SetFont(window, font());
        return FRAMEWIN_SetFont(window, font());
    case 3:
        BUTTON_SetTextAlign(window, input->byte());
        EDIT_SetTextAlign(window, input->byte());
        return TEXT_SetTextAlign(window, input->byte());
    case 4:
        BUTTON_SetBitmap(window, state, wanted == GUI_BLACK ? &Bitmap : nullptr);
        return BUTTON_SetPressed(window, input->below(2));
    case 5:
        return WIDGET_SetEffect(window, effects[input->below(3)]);
    case 6:
        FRAMEWIN_SetTitleVis(window, input->below(2));
        return FRAMEWIN_SetBorderSize(window, input->place());
    case 7:
        EDIT_SetInsertMode(window, input->below(2));
        return EDIT_SetCursorAtChar(window, input->place());
    }
}

using Operation = void (*)();
// The order of the input's bytes is that of the calls: no two of them are arguments of one.
const Operation Operations[] = {
    create,
    create,
    setText,
    setLook,
    setLook,
    [] { WM_DeleteWindow(any()); },
    [] { WM_HideWindow(any()); },
    [] { WM_ShowWindow(any()); },
    [] { WM_DisableWindow(any()); },
    [] { WM_EnableWindow(any()); },
    [] { WM_BringToTop(any()); },
    [] { WM_BringToBottom(any()); },
    [] { WM_SetFocus(any()); },
    [] { WM_InvalidateWindow(any()); },
    [] { WM_SetDesktopColor(color()); },
    [] { GUI_SendKeyMsg(input->word() % 0x120, 1); },
    [] { GUI_SendKeyMsg(input->word() % 0x120, 0); },
    [] {
        const WM_Handle window = any();
        WM_InvalidateRect(window, rect());
    },
    [] {
        const WM_Handle window = any();
        const int x = input->place();
        WM_MoveTo(window, x, input->place());
    },
    [] {
        const WM_Handle window = any();
        const int x = input->place();
        WM_MoveBy(window, x, input->place());
    },
    [] {
        const WM_Handle window = any();
        const int x = input->place();
        WM_SetSize(window, x, input->place());
    },
    [] { WM_NotifyParent(any(), WM_VALUE_CHANGED); },
    [] { WM_Exec(); },
};

void operate()
{
    if (input != nullptr && nested < MostNested && !input->isOver()) {
        ++nested;
        Operations[input->below(std::size(Operations))]();
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
    while (!bytes.isOver()) {
        input = &bytes;
        for (int operations = 1 + bytes.below(16); operations > 0; --operations) {
            operate();
        }
        input = nullptr;
        requireWholePicture();
    }
    return 0;
}
