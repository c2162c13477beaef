#include "meter.h"
#include "testdisplay.h"
#include "testregistry.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace
{
constexpr GUI_Rect Box = {10, 8, 69, 39}; ///< of the widget that is looked at
constexpr int Far = std::numeric_limits<int>::max();

const std::uint8_t Dots3x3[] = {0xE0, 0xA0, 0xE0};
const GUI_Color BlackIs1[] = {GUI_WHITE, GUI_BLACK};
const GUI_Bitmap Ring = {3, 3, 1, 1, Dots3x3, BlackIs1, 2};
const GUI_Font TooWideFont = {17, 8, GUI_Font6x8.glyphs};

/// Button, text, edit field, frame or meter.
WM_Handle box(char kind)
{
    constexpr int Width = Box.x1 - Box.x0 + 1;
    constexpr int Height = Box.y1 - Box.y0 + 1;
    const WM_Handle widget =
        kind == 'F'   ? FRAMEWIN_Create("Text", nullptr, WM_VISIBLE, Box.x0, Box.y0, Width, Height)
        : kind == 'T' ? TEXT_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1, "Text")
        : kind == 'B' ? BUTTON_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1)
                      : (kind == 'E' ? EDIT_CreateEx : METER_CreateEx)(Box.x0, Box.y0, Width, Height, 0,
                                                                       WM_VISIBLE, 1, 50);
    BUTTON_SetText(widget, "Text"), EDIT_SetText(widget, "Text");
    paintAnew();
    display.forget();
    return widget;
}

struct Setter {
    const char *name;
    bool paints; ///< with the value 1
    char kind;
    std::function<void(WM_Handle widget, int value)> set; ///< 0 to 4
};

/// A setter that is its own name; `w` is the widget, `v` the value.
#define SETTER(paints, kind, ...)                                                                            \
    {                                                                                                        \
#__VA_ARGS__, paints, kind,                                                                          \
            []([[maybe_unused]] WM_Handle w, [[maybe_unused]] int v) { __VA_ARGS__; }                        \
    }

const char *const Strings[] = {"Text", "Next", nullptr, "a", "a wide text"};
const GUI_Font *const Fonts[] = {&GUI_Font6x8, &WideFont, &GUI_Font6x8, &TooWideFont, nullptr};
const WIDGET_Effect Effects[] = {WIDGET_Effect_None, WIDGET_Effect_Simple, {3}, {-Far}, {Far}};
const GUI_Bitmap *const Bitmaps[] = {nullptr, &Ring, nullptr, &Ring, nullptr};

GUI_Color black(int value)
{
    return value % 2 == 0 ? GUI_WHITE : GUI_BLACK;
}

constexpr auto Released = BUTTON_RELEASED;
constexpr auto Pressed = BUTTON_PRESSED;

const Setter Setters[] = {
    SETTER(true, 'T', TEXT_SetText(w, Strings[v])),
    SETTER(true, 'T', TEXT_SetFont(w, Fonts[v])),
    SETTER(true, 'T', TEXT_SetTextAlign(w, 2 * v)),
    SETTER(true, 'T', TEXT_SetTextColor(w, black(v + 1))),
    SETTER(true, 'T', TEXT_SetBkColor(w, black(v))),
    SETTER(true, 'T', WIDGET_SetEffect(w, &Effects[v])),
    SETTER(true, 'B', BUTTON_SetText(w, Strings[v])),
    SETTER(true, 'B', BUTTON_SetBitmap(w, Released, Bitmaps[v])),
    SETTER(true, 'B', BUTTON_SetFont(w, Fonts[v])),
    SETTER(true, 'B', BUTTON_SetTextAlign(w, 2 * v)),
    SETTER(true, 'B', BUTTON_SetBkColor(w, Released, black(v))),
    SETTER(true, 'B', BUTTON_SetTextColor(w, Released, black(v + 1))),
    SETTER(true, 'B', BUTTON_SetPressed(w, v % 2)),
    SETTER(true, 'B', WIDGET_SetEffect(w, &Effects[(v + 4) % 5])),
    SETTER(true, 'B', (v % 2 == 0 ? WM_ShowWindow : WM_HideWindow)(w)),
    SETTER(true, 'B', WM_SetSize(w, 17 * v, 10 * v - 1)),
    SETTER(true, 'E', EDIT_SetText(w, Strings[v])),
    SETTER(true, 'E', EDIT_SetFont(w, Fonts[v])),
    SETTER(true, 'E', EDIT_SetTextAlign(w, 2 * v)),
    SETTER(true, 'E', EDIT_SetTextColor(w, black(v + 1))),
    SETTER(true, 'E', EDIT_SetBkColor(w, black(v))),
    SETTER(true, 'E', WM_SetFocus(w)),
    SETTER(true, 'F', FRAMEWIN_SetText(w, Strings[v])),
    SETTER(true, 'F', FRAMEWIN_SetTitleVis(w, 1 - v % 2)),
    SETTER(true, 'F', FRAMEWIN_SetBorderSize(w, 5 * v % 7)),
    SETTER(true, 'F', FRAMEWIN_SetClientColor(w, black(v))),
    SETTER(true, 'F', FRAMEWIN_SetFont(w, Fonts[v])),
    SETTER(true, 'M', METER_SetValue(w, 10 * v)),
    SETTER(true, 'M', WM_SetFocus(w)),
    SETTER(false, 'M', METER_SetValue(w, -v)),
    SETTER(false, 'T', TEXT_SetTextColor(w, 0x101010)),
    SETTER(false, 'T', TEXT_SetFont(w, &TooWideFont)),
    SETTER(false, 'T', TEXT_SetTextAlign(w, GUI_ALIGN_LEFT | GUI_ALIGN_VCENTER | 64)),
    SETTER(false, 'T', TEXT_SetText(w, nullptr); WM_Exec(); TEXT_SetFont(w, &WideFont);
           TEXT_SetTextAlign(w, 1)),
    SETTER(false, 'T', TEXT_SetText(w, nullptr); WM_Exec(); TEXT_SetTextColor(w, GUI_WHITE)),
    SETTER(false, 'B', BUTTON_SetBkColor(w, Pressed, black(v + 1))),
    SETTER(false, 'B', BUTTON_SetTextColor(w, Pressed, black(v))),
    SETTER(false, 'B', BUTTON_SetBitmap(w, Pressed, Bitmaps[v])),
    SETTER(false, 'B', BUTTON_SetBitmap(w, Released, &Ring); WM_Exec(); BUTTON_SetText(w, Strings[v])),
    SETTER(false, 'F', FRAMEWIN_SetTitleVis(w, 0); WM_Exec(); FRAMEWIN_SetText(w, Strings[v])),
    SETTER(false, 'E', EDIT_SetInsertMode(w, 1 - v % 2)),
    SETTER(false, 'E', EDIT_SetCursorAtChar(w, v)),
    SETTER(false, 'E', EDIT_AddKey(w, GUI_KEY_HOME)),
    SETTER(false, 'F', WIDGET_SetEffect(w, &Effects[v])),
    SETTER(false, 'B', (v % 2 == 0 ? WM_EnableWindow : WM_DisableWindow)(w)),
    SETTER(false, 'B', WM_SetFocus(w); WM_DisableWindow(w); WM_EnableWindow(w)),
    SETTER(false, 'B', WM_SetId(w, 2); WM_SetUserData(w, &w)),
};

/// Drawing that the widget's own must not depend on.
void drawFirst(WM_Message &message)
{
    GUI_SetColor(GUI_WHITE);
    WM_DefaultProc(message);
}
} // namespace

class TestWidgets : public QObject
{
    Q_OBJECT

private slots:
    void init() { start(); }

    void settersPaintOnceAndWithin()
    {
        for (const Setter &setter : Setters) {
            start();
            const WM_Handle widget = box(setter.kind);
            setter.set(widget, 1);
            QVERIFY2(!setter.paints || !display.isDamaged(), setter.name);
            QVERIFY2((WM_Exec() == 1) == setter.paints && display.isDamageWithin(Box), setter.name);
            setter.set(widget, 1);
            QVERIFY2(WM_Exec() == 0, setter.name);
        }
    }

    void onlyChangedCharactersArePainted()
    {
        const QByteArray texts[] = {"|}~|", "|}|}", "}|~|", "}|", "~|", "~||", "|}", "}"};
        const WM_Handle text = box('T');
        for (int i = 0; i < 2 * 7; ++i) {
            const GUI_Font &font = i % 2 == 0 ? GUI_Font6x8 : WideFont;
            const QByteArray &before = texts[i / 2];
            const QByteArray &after = texts[i / 2 + 1];
            const auto same = std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first -
                              before.begin();
            TEXT_SetFont(text, &font);
            TEXT_SetText(text, before);
            paintAnew();
            TEXT_SetText(text, after);
            paintAnew();
            QCOMPARE(display.damage.x0, Box.x0 + widthOf(after, font, int(same)));
            QCOMPARE(display.damage.x1, Box.x0 + std::max(widthOf(before, font), widthOf(after, font)) - 1);
        }
    }

    void textsMoveOnlyToStayOnTheDisplay()
    {
        const struct {
            const char *text;
            const GUI_Font &font;
            int width, height; ///< of the widget
            GUI_Rect dots;     ///< of the text
        } kinds[] = {{"40", GUI_Font6x8, 16, 10, {0, 0, 10, 6}},
                     {"01>04", GUI_Font6x8, 32, 10, {0, 0, 28, 6}},
                     {"~}", WideFont, 20, 14, {1, 0, 14, 7}}};
        for (int i = 0; i < 3 * 5 * 5 * 9; ++i) {
            const auto &kind = kinds[i % 3];
            const auto &[string, font, width, height, dots] = kind;
            const int left =
                std::array{-3, -1, 20, LCD_GetXSize() - width + 1, LCD_GetXSize() - width + 3}[i / 3 % 5];
            const int top =
                std::array{-3, -1, 20, LCD_GetYSize() - height + 1, LCD_GetYSize() - height + 3}[i / 15 % 5];
            const int x0 = left + (width - widthOf(string, font)) * (i / 75 % 3) / 2;
            const int y0 = top + (height - font.height) * (i / 225) / 2;
            const int dx = std::clamp(0, -x0 - dots.x0, LCD_GetXSize() - 1 - x0 - dots.x1);
            const int dy = std::clamp(0, -y0 - dots.y0, LCD_GetYSize() - 1 - y0 - dots.y1);
            start();
            const WM_Handle text = TEXT_CreateEx(left, top, width, height, 0, WM_VISIBLE, 1, string);
            TEXT_SetFont(text, &font);
            TEXT_SetTextAlign(text, i / 75 % 3 + i / 225 * 4);
            COMPARE_PAINTED(isTextDot(kind.text, x0 + dx, y0 + dy, x, y, kind.font));
        }
    }

    void pressedButtonsHaveTheirOwnLook()
    {
        const WM_Handle button = box('B');
        BUTTON_SetPressed(button, 1);
        COMPARE_PAINTED(isWithin(Box, x, y) && !isTextDot("Text", 28, 20, x, y));
        BUTTON_SetBkColor(button, BUTTON_PRESSED, GUI_WHITE);
        BUTTON_SetBitmap(button, BUTTON_PRESSED, &Ring);
        COMPARE_PAINTED(isOnEdge(Box, x, y) || isOnEdge({11, 9, 13, 11}, x, y));
    }

    void keysHoldButtonsDown()
    {
        const WM_Handle button = box('B');
        WM_SetFocus(button);
        for (const int key : {int(GUI_KEY_ENTER), int(' ')}) {
            GUI_SendKeyMsg(key, 1);
            GUI_SendKeyMsg('x', 0);
            QVERIFY(BUTTON_IsPressed(button));
            GUI_SendKeyMsg(key, 0);
            QVERIFY(!BUTTON_IsPressed(button));
        }
        GUI_SendKeyMsg('x', 1);
        QVERIFY(!BUTTON_IsPressed(button));
        GUI_SendKeyMsg(' ', 1);
        WM_SetFocus(0);
        QVERIFY(!BUTTON_IsPressed(button));
        BUTTON_SetPressed(button, 1);
        WM_SetFocus(button);
        WM_SetFocus(0);
        QVERIFY(BUTTON_IsPressed(button));
    }

    void framesSurroundTheirClientArea()
    {
        FRAMEWIN_SetDefaultBorderSize(3);
        const WM_Handle frame = box('F');
        WM_SetCallback(frame, drawFirst);
        WM_InvalidateWindow(frame);
        WM_DeleteWindow(TEXT_CreateEx(-5, -5, 99, 99, frame, WM_VISIBLE, 1, "over the border"));
        const WM_Handle child = TEXT_CreateEx(-2, 4, 99, 8, frame, WM_VISIBLE, 2, "child");
        COMPARE_PAINTED(isWithin(Box, x, y) && !isWithin({13, 21, 66, 36}, x, y)
                            ? !isTextDot("Text", 14, 12, x, y)
                            : x >= 13 && isTextDot("child", 11, 25, x, y));
        WM_SetSize(frame, 60, 9);
        COMPARE_PAINTED(isWithin({10, 8, 69, 16}, x, y) && (y > 13 || !isTextDot("Text", 14, 11, x, y)));
        FRAMEWIN_SetTitleVis(frame, 0);
        FRAMEWIN_SetBorderSize(frame, -1);
        QCOMPARE(WM_GetWindowRect(child).x0, 8);
        QCOMPARE(WM_GetWindowRect(child).y0, 12);
    }
};

static const RegisteredTest<TestWidgets> registered;
#include "testwidgets.moc"
