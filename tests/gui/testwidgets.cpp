#include "testdisplay.h"
#include "testregistry.h"

#include <cstring>
#include <functional>
#include <limits>
#include <random>

namespace
{
constexpr GUI_Rect Box = {10, 8, 69, 39}; ///< of the widget that is looked at
constexpr int Far = std::numeric_limits<int>::max();
constexpr int Centred = GUI_ALIGN_HCENTER | GUI_ALIGN_VCENTER;

const std::uint8_t Dots3x3[] = {0xE0, 0xA0, 0xE0};
const GUI_Color BlackIs1[] = {GUI_WHITE, GUI_BLACK};
const GUI_Bitmap Ring = {3, 3, 1, 1, Dots3x3, BlackIs1, 2};

/// The 6 x 8 font in cells of 12 rows.
struct TallGlyphs {
    unsigned char rows[256][12] = {};
    GUI_Glyph glyphs[256] = {};

    TallGlyphs()
    {
        for (int character = 0; character < 256; ++character) {
            std::copy_n(GUI_Font6x8.glyphs[character].rows, 8, rows[character]);
            glyphs[character] = GUI_Font6x8.glyphs[character];
            glyphs[character].rows = rows[character];
        }
    }
};
const TallGlyphs Tall;
const GUI_Font TallFont = {6, 12, Tall.glyphs};

WM_Handle box(char kind)
{
    constexpr int Width = Box.x1 - Box.x0 + 1;
    constexpr int Height = Box.y1 - Box.y0 + 1;
    WM_Handle widget = 0;
    if (kind == 'B') {
        widget = BUTTON_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1);
        BUTTON_SetText(widget, "Text");
    } else if (kind == 'T' || kind == 'N') {
        widget =
            TEXT_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1, kind == 'T' ? "Text" : nullptr);
    } else if (kind == 'F') {
        widget = FRAMEWIN_Create("Text", nullptr, WM_VISIBLE, Box.x0, Box.y0, Width, Height);
    } else {
        widget = EDIT_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1, 8);
        EDIT_SetText(widget, "Text");
    }
    paintAnew();
    display.forget();
    return widget;
}

struct Setter {
    const char *name;
    char kind;
    std::function<void(WM_Handle)> set;
};

/// A setter that is its own name; `w` is the widget.
#define SETTER(kind, ...)                                                                                    \
    {                                                                                                        \
#__VA_ARGS__, kind, []([[maybe_unused]] WM_Handle w) { __VA_ARGS__; }                                \
    }

const Setter Visible[] = {
    SETTER('T', TEXT_SetText(w, "Next")),
    SETTER('T', TEXT_SetText(w, nullptr)),
    SETTER('T', TEXT_SetFont(w, &TallFont)),
    SETTER('T', TEXT_SetTextAlign(w, GUI_ALIGN_RIGHT)),
    SETTER('T', TEXT_SetTextColor(w, GUI_WHITE)),
    SETTER('T', TEXT_SetBkColor(w, GUI_BLACK)),
    SETTER('T', WIDGET_SetEffect(w, &WIDGET_Effect_Simple)),
    SETTER('B', BUTTON_SetText(w, "Texts")),
    SETTER('B', BUTTON_SetBitmap(w, BUTTON_RELEASED, &Ring)),
    SETTER('B', BUTTON_SetFont(w, &TallFont)),
    SETTER('B', BUTTON_SetTextAlign(w, GUI_ALIGN_LEFT)),
    SETTER('B', BUTTON_SetBkColor(w, BUTTON_RELEASED, GUI_BLACK)),
    SETTER('B', BUTTON_SetTextColor(w, BUTTON_RELEASED, GUI_WHITE)),
    SETTER('B', BUTTON_SetPressed(w, 1)),
    SETTER('B', WIDGET_SetEffect(w, &WIDGET_Effect_None)),
    SETTER('B', WM_HideWindow(w)),
    SETTER('B', WM_SetSize(w, 9, 9)),
    SETTER('B', WM_DeleteWindow(w)),
    SETTER('E', EDIT_SetText(w, "Ten")),
    SETTER('E', EDIT_SetFont(w, &TallFont)),
    SETTER('E', EDIT_SetTextAlign(w, Centred)),
    SETTER('E', EDIT_SetTextColor(w, GUI_WHITE)),
    SETTER('E', EDIT_SetBkColor(w, GUI_BLACK)),
    SETTER('E', WM_SetFocus(w)),
    SETTER('F', FRAMEWIN_SetText(w, "Next")),
    SETTER('F', FRAMEWIN_SetTitleVis(w, 0)),
    SETTER('F', FRAMEWIN_SetBorderSize(w, 99)),
    SETTER('F', FRAMEWIN_SetClientColor(w, GUI_BLACK)),
    SETTER('F', FRAMEWIN_SetFont(w, &TallFont)),
};

const Setter Invisible[] = {
    SETTER('T', TEXT_SetTextColor(w, 0x101010)),
    SETTER('T', TEXT_SetTextAlign(w, GUI_ALIGN_LEFT | GUI_ALIGN_VCENTER | 64)),
    SETTER('N', TEXT_SetFont(w, &TallFont)),
    SETTER('N', TEXT_SetTextColor(w, GUI_WHITE)),
    SETTER('N', TEXT_SetTextAlign(w, GUI_ALIGN_RIGHT)),
    SETTER('B', BUTTON_SetBkColor(w, BUTTON_PRESSED, GUI_WHITE)),
    SETTER('B', BUTTON_SetTextColor(w, BUTTON_PRESSED, GUI_BLACK)),
    SETTER('B', BUTTON_SetBitmap(w, BUTTON_PRESSED, &Ring)),
    SETTER('B', BUTTON_SetFont(w, nullptr)),
    SETTER('B', BUTTON_SetBitmap(w, BUTTON_RELEASED, &Ring); WM_Exec(); BUTTON_SetText(w, "Next")),
    SETTER('F', FRAMEWIN_SetTitleVis(w, 0); WM_Exec(); FRAMEWIN_SetText(w, "Next")),
    SETTER('E', EDIT_SetCursorAtChar(w, 1)),
    SETTER('E', EDIT_SetInsertMode(w, 0)),
    SETTER('E', EDIT_AddKey(w, GUI_KEY_HOME)),
    SETTER('F', WIDGET_SetEffect(w, &WIDGET_Effect_Simple)),
    SETTER('F', FRAMEWIN_SetDefaultClientColor(GUI_BLACK)),
    SETTER('B', WIDGET_SetDefaultEffect_None()),
    SETTER('B', BUTTON_SetDefaultBkColor(BUTTON_RELEASED, GUI_BLACK)),
};

bool onEdge(const GUI_Rect &rect, int x, int y)
{
    return isWithin(rect, x, y) && !isWithin({rect.x0 + 1, rect.y0 + 1, rect.x1 - 1, rect.y1 - 1}, x, y);
}

/// Drawing that the widget's own must not depend on.
void drawFirst(WM_Message &message)
{
    GUI_SetColor(GUI_WHITE);
    WM_DefaultProc(message);
}

QByteArray textOf(WM_Handle edit)
{
    char text[300];
    const int length = EDIT_GetText(edit, text, sizeof text);
    return QByteArray(text, length);
}

void pressKeys(const char *keys)
{
    for (; *keys != '\0'; ++keys) {
        const char *const name = std::strchr("<>^$~-#", *keys);
        const int codes[] = {GUI_KEY_LEFT,   GUI_KEY_RIGHT,     GUI_KEY_HOME,  GUI_KEY_END,
                             GUI_KEY_INSERT, GUI_KEY_BACKSPACE, GUI_KEY_DELETE};
        GUI_SendKeyMsg(name != nullptr ? codes[name - "<>^$~-#"] : *keys, 1);
    }
}
} // namespace

class TestWidgets : public QObject
{
    Q_OBJECT

private slots:
    void init() { start(); }

    void settersPaintOnceAndWithin()
    {
        for (const Setter &setter : Visible) {
            start();
            const WM_Handle widget = box(setter.kind);
            setter.set(widget);
            QVERIFY2(!display.isDamaged() && WM_Exec() == 1 && display.isDamaged(), setter.name);
            QVERIFY2(display.isDamageWithin(Box), setter.name);
            setter.set(widget);
            QVERIFY2(WM_Exec() == 0, setter.name);
            COMPARE_REPAINTED();
        }
    }

    void whatIsNotVisibleIsNotPainted()
    {
        for (const Setter &setter : Invisible) {
            start();
            setter.set(box(setter.kind));
            QVERIFY2(WM_Exec() == 0, setter.name);
        }
    }

    void onlyChangedCharactersArePainted()
    {
        const WM_Handle button = box('B');
        BUTTON_SetText(button, "Team");
        paintAnew();
        QCOMPARE(display.damage.x0, 28 + 2 * 6);
        QCOMPARE(display.damage.x1, 28 + 4 * 6 - 1);
    }

    void textsAreAligned()
    {
        const int xs[] = {11, 28, 45};
        const int ys[] = {9, 20, 31};
        const WM_Handle button = box('B');
        WM_SetCallback(button, drawFirst);
        for (int i = 0; i < 9; ++i) {
            BUTTON_SetTextAlign(button, i % 3 + i / 3 * 4);
            COMPARE_PAINTED(onEdge(Box, x, y) || isTextDot("Text", xs[i % 3], ys[i / 3], x, y));
        }
        BUTTON_SetText(button, "wider than it is");
        COMPARE_PAINTED(onEdge(Box, x, y) || (x < Box.x1 && isTextDot("wider than it is", 11, 31, x, y)));
        BUTTON_SetText(button, "Text");
        BUTTON_SetTextAlign(button, Centred);
        WM_MoveTo(button, 100, Box.y0);
        COMPARE_PAINTED(onEdge({100, 8, 159, 39}, x, y) || isTextDot("Text", 102, 20, x, y));
    }

    void pressedButtonsHaveTheirOwnLook()
    {
        const WM_Handle button = box('B');
        BUTTON_SetPressed(button, 1);
        COMPARE_PAINTED(isWithin(Box, x, y) && !isTextDot("Text", 28, 20, x, y));
        BUTTON_SetBkColor(button, BUTTON_PRESSED, GUI_WHITE);
        BUTTON_SetBitmap(button, BUTTON_PRESSED, &Ring);
        COMPARE_PAINTED(onEdge(Box, x, y) || onEdge({11, 9, 13, 11}, x, y));
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

    void editsAreTypedInto()
    {
        for (const auto &[keys, text, cursor] : {std::tuple("^ab", "abText", 2),
                                                 {"12345", "Text1234", 8},
                                                 {"^~ab", "abxt", 2},
                                                 {"~<bcdefghi", "Texbcdef", 8},
                                                 {"1234^~ab", "abxt1234", 2},
                                                 {"^~~a", "aText", 1},
                                                 {"<--", "Tt", 1},
                                                 {"^-", "Text", 0},
                                                 {"^>##", "Tt", 1},
                                                 {"#>", "Text", 4},
                                                 {"^<$>>", "Text", 4},
                                                 {"\t\r\n\x1B\x85", "Text", 4}}) {
            start();
            const WM_Handle edit = box('E');
            WM_SetFocus(edit);
            pressKeys(keys);
            QCOMPARE(textOf(edit), QByteArray(text));
            QCOMPARE(EDIT_GetCursorCharPos(edit), cursor);
            COMPARE_REPAINTED();
        }
    }

    void editsCutTheirTexts()
    {
        const WM_Handle edit = box('E');
        EDIT_SetText(edit, "much too long");
        QCOMPARE(textOf(edit), QByteArray("much too"));
        char four[4];
        QCOMPARE(EDIT_GetText(edit, four, 4), 8);
        QCOMPARE(four, "muc");
        EDIT_SetCursorAtChar(edit, 99);
        QCOMPARE(EDIT_GetCursorCharPos(edit), 8);
        EDIT_SetCursorAtChar(edit, -1);
        QCOMPARE(EDIT_GetCursorCharPos(edit), 0);
        const WM_Handle least = EDIT_CreateEx(0, 0, 9, 9, 0, WM_HIDDEN, 3, -4);
        EDIT_SetText(least, "ab");
        QCOMPARE(textOf(least), QByteArray("a"));
    }

    void editsShowTheirCursor()
    {
        const struct {
            int insert, position;
            GUI_Rect cursor;
            GUI_Rect damage;
        } rows[] = {
            {1, 4, {35, 20, 35, 27}, {35, 20, 35, 27}}, {1, 0, {11, 20, 11, 27}, {11, 20, 35, 27}},
            {1, 1, {17, 20, 17, 27}, {11, 20, 17, 27}}, {0, 1, {17, 20, 23, 27}, {17, 20, 23, 27}},
            {0, 4, {35, 20, 41, 27}, {17, 20, 41, 27}}, {0, 4, {35, 20, 41, 27}, {0, 0, -1, -1}},
        };
        const WM_Handle edit = box('E');
        WM_SetFocus(edit);
        for (const auto &row : rows) {
            EDIT_SetInsertMode(edit, row.insert);
            EDIT_SetCursorAtChar(edit, row.position);
            paintAnew();
            QVERIFY(display.isDamageWithin(row.damage));
            COMPARE_PAINTED(onEdge(Box, x, y) ||
                            isTextDot("Text", 12, 20, x, y) != isWithin(row.cursor, x, y));
        }
        WM_SetSize(edit, 96, 10);
        for (const char *const text : {"Text", "TextText"}) {
            EDIT_SetText(edit, text);
            WM_Exec();
            const int end = 12 + 6 * int(std::strlen(text));
            QCOMPARE(int(display.dots[9][end]), 0);
        }
        WM_SetSize(edit, 50, 10);
        WM_Exec();
        QCOMPARE(int(display.dots[11][10 + 48]), 0);
        QCOMPARE(int(display.dots[9][11]), 0);
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

    void anyChangeShowsAsPaintedAnew()
    {
        std::mt19937 generator(7);
        const char kinds[] = {'B', 'E', 'T', 'F'};
        WM_Handle widgets[std::size(kinds)];
        std::transform(std::begin(kinds), std::end(kinds), widgets, box);
        const char *const texts[] = {"", "a", "Text", "Next", "a wide text"};
        const GUI_Font *const fonts[] = {&GUI_Font6x8, &TallFont};
        const WIDGET_Effect effects[] = {WIDGET_Effect_None, WIDGET_Effect_Simple, {3}, {-Far}, {Far}};
        for (int round = 0; round < 4000; ++round) {
            const WM_Handle w = widgets[generator() % 4];
            const unsigned value = generator();
            const GUI_Color color = value % 2 == 0 ? GUI_WHITE : GUI_BLACK;
            const auto state = static_cast<BUTTON_State>(value / 2 % 2);
            const std::function<void()> changes[] = {
                [&] { BUTTON_SetText(w, texts[value % 5]), EDIT_SetText(w, texts[value % 5]); },
                [&] { TEXT_SetText(w, texts[value % 5]), FRAMEWIN_SetText(w, texts[value % 5]); },
                [&] { BUTTON_SetFont(w, fonts[value % 2]), EDIT_SetFont(w, fonts[value % 2]); },
                [&] { TEXT_SetFont(w, fonts[value % 2]), FRAMEWIN_SetFont(w, fonts[value % 2]); },
                [&] { BUTTON_SetTextAlign(w, int(value % 16)), EDIT_SetTextAlign(w, int(value % 16)); },
                [&] { BUTTON_SetTextColor(w, state, color), EDIT_SetTextColor(w, color); },
                [&] { BUTTON_SetBkColor(w, state, color), FRAMEWIN_SetClientColor(w, color); },
                [&] { BUTTON_SetBitmap(w, state, value / 4 % 2 == 0 ? &Ring : nullptr); },
                [&] { BUTTON_SetPressed(w, int(value % 2)), FRAMEWIN_SetTitleVis(w, int(value % 2)); },
                [&] { WIDGET_SetEffect(w, &effects[value % 5]), FRAMEWIN_SetBorderSize(w, int(value % 9)); },
                [&] { EDIT_SetInsertMode(w, int(value % 2)), EDIT_SetCursorAtChar(w, int(value % 6)); },
                [&] { EDIT_AddKey(w, "x\b\x7F"[value % 3]), WM_SetFocus(widgets[value % 4]); },
                [&] { WM_SetSize(w, int(value % 70), int(value / 70 % 40)); },
                [&] { WM_BringToTop(w), WM_MoveTo(w, int(value % 70), int(value / 70 % 40)); },
            };
            changes[generator() % std::size(changes)]();
            COMPARE_REPAINTED();
        }
    }
};

static const RegisteredTest<TestWidgets> registered;
#include "testwidgets.moc"
