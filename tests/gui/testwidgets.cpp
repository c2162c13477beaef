#include "testdisplay.h"
#include "testregistry.h"

#include <algorithm>

namespace
{
constexpr GUI_Rect Box = {10, 8, 69, 39}; ///< of the widget that is looked at

const std::uint8_t Dots3x3[] = {0xE0, 0xA0, 0xE0};
const GUI_Color BlackIs1[] = {GUI_WHITE, GUI_BLACK};
const GUI_Bitmap Ring = {3, 3, 1, 1, Dots3x3, BlackIs1, 2};
const GUI_Font TooGUI_Font16 = {17, 8, GUI_Font6x8.glyphs};

const QRect AllOfBox(10, 8, 60, 32);

/// Button, text, edit field or frame.
WM_Handle box(char kind)
{
    constexpr int Width = Box.x1 - Box.x0 + 1;
    constexpr int Height = Box.y1 - Box.y0 + 1;
    const WM_Handle widget =
        kind == 'F'   ? FRAMEWIN_Create("Text", nullptr, WM_VISIBLE, Box.x0, Box.y0, Width, Height)
        : kind == 'T' ? TEXT_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1, "Text")
        : kind == 'B' ? BUTTON_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1)
                      : EDIT_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1, 50);
    BUTTON_SetText(widget, "Text"), EDIT_SetText(widget, "Text");
    paintAnew();
    display.forget();
    return widget;
}

struct Setter {
    const char *name;
    bool paints;
    char kind;
    void (*set)(WM_Handle widget);
};

/// A setter that is its own name; `w` is the widget.
#define SETTER(paints, kind, ...)                                                                            \
    {                                                                                                        \
#__VA_ARGS__, paints, kind, [](WM_Handle w) { __VA_ARGS__; }                                         \
    }

constexpr auto Released = BUTTON_RELEASED;
constexpr auto Pressed = BUTTON_PRESSED;

const Setter Setters[] = {
    SETTER(true, 'T', TEXT_SetText(w, "Next")),
    SETTER(true, 'T', TEXT_SetFont(w, &GUI_Font16)),
    SETTER(true, 'T', TEXT_SetTextAlign(w, GUI_ALIGN_HCENTER)),
    SETTER(true, 'T', TEXT_SetTextColor(w, GUI_WHITE)),
    SETTER(true, 'T', TEXT_SetBkColor(w, GUI_BLACK)),
    SETTER(true, 'T', WIDGET_SetEffect(w, &WIDGET_Effect_Simple)),
    SETTER(true, 'B', BUTTON_SetBitmap(w, Released, &Ring)),
    SETTER(true, 'B', BUTTON_SetTextColor(w, Released, GUI_WHITE)),
    SETTER(true, 'B', BUTTON_SetPressed(w, 1)),
    SETTER(true, 'B', WM_SetSize(w, 17, 9)),
    SETTER(true, 'E', WM_SetFocus(w)),
    SETTER(true, 'F', FRAMEWIN_SetTitleVis(w, 0)),
    SETTER(true, 'F', FRAMEWIN_SetBorderSize(w, 5)),
    SETTER(true, 'F', FRAMEWIN_SetClientColor(w, GUI_BLACK)),
    SETTER(false, 'T', TEXT_SetTextColor(w, 0x101010)),
    SETTER(false, 'T', TEXT_SetFont(w, &TooGUI_Font16)),
    SETTER(false, 'T', TEXT_SetTextAlign(w, GUI_ALIGN_LEFT | GUI_ALIGN_VCENTER | 64)),
    SETTER(false, 'T', TEXT_SetText(w, nullptr); WM_Exec(); TEXT_SetTextColor(w, GUI_WHITE)),
    SETTER(false, 'B', BUTTON_SetBkColor(w, Pressed, GUI_WHITE)),
    SETTER(false, 'B', BUTTON_SetBitmap(w, Pressed, &Ring)),
    SETTER(false, 'B', BUTTON_SetBitmap(w, Released, &Ring); WM_Exec(); BUTTON_SetText(w, "Next")),
    SETTER(false, 'F', FRAMEWIN_SetTitleVis(w, 0); WM_Exec(); FRAMEWIN_SetText(w, "Next")),
    SETTER(false, 'E', EDIT_SetCursorAtChar(w, 1)),
    SETTER(false, 'B', WM_SetFocus(w); WM_DisableWindow(w); WM_EnableWindow(w)),
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
            setter.set(widget);
            QVERIFY2(!setter.paints || !display.isDamaged(), setter.name);
            QVERIFY2((WM_Exec() == 1) == setter.paints && (display.damage | AllOfBox) == AllOfBox,
                     setter.name);
            setter.set(widget);
            QVERIFY2(WM_Exec() == 0, setter.name);
            const Dots shown = display.dots;
            WM_InvalidateWindow(widget);
            COMPARE_PAINTED(shown[y][x] == 0);
        }
    }

    void onlyChangedCharactersArePainted()
    {
        const QByteArray texts[] = {"iM-i", "iMiM", "Mi", "-i", "-ii", "iM", "M"};
        const int same[] = {2, 0, 0, 2, 0, 0};
        const WM_Handle text = box('T');
        TEXT_SetFont(text, &GUI_Font16);
        GUI_SetFont(&GUI_Font16);
        for (int i = 0; i < 6; ++i) {
            TEXT_SetText(text, texts[i]);
            paintAnew();
            TEXT_SetText(text, texts[i + 1]);
            paintAnew();
            const int width = std::max(GUI_GetStringWidth(texts[i]), GUI_GetStringWidth(texts[i + 1]));
            QCOMPARE(display.damage.left(), Box.x0 + GUI_GetStringWidth(texts[i].left(same[i])));
            QCOMPARE(display.damage.right(), Box.x0 + width - 1);
        }
    }

    /// The dots of "40" are 11 wide and 7 high.
    void textsMoveOnlyToStayOnTheDisplay()
    {
        constexpr int TopLeft = GUI_ALIGN_LEFT | GUI_ALIGN_TOP;
        constexpr int BottomRight = GUI_ALIGN_RIGHT | GUI_ALIGN_BOTTOM;
        const struct {
            int align, left, top, textX, textY;
        } cases[] = {{TopLeft, 20, 20, 20, 20},
                     {TopLeft, -3, -3, 0, 0},
                     {BottomRight, 113, 55, 117, 57},
                     {BottomRight, 115, 57, 117, 57}};
        for (const auto &c : cases) {
            start();
            TEXT_SetTextAlign(TEXT_CreateEx(c.left, c.top, 16, 10, 0, WM_VISIBLE, 1, "40"), c.align);
            COMPARE_PAINTED(isTextDot("40", c.textX, c.textY, x, y));
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
        for (const int key : {int(GUI_KEY_ENTER), int(' '), int('x')}) {
            GUI_SendKeyMsg(key, 1);
            GUI_SendKeyMsg('y', 0);
            QCOMPARE(BUTTON_IsPressed(button), int(key != 'x'));
            GUI_SendKeyMsg(key, 0);
            QVERIFY(!BUTTON_IsPressed(button));
        }
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
