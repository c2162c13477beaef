#include "meter.h"
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
const GUI_Font TooWideFont = {17, 8, GUI_Font6x8.glyphs};

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
    } else if (kind == 'M') {
        widget = METER_CreateEx(Box.x0, Box.y0, Width, Height, 0, WM_VISIBLE, 1, 50);
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
    SETTER('T', TEXT_SetFont(w, &WideFont)),
    SETTER('T', TEXT_SetTextAlign(w, GUI_ALIGN_RIGHT)),
    SETTER('T', TEXT_SetTextColor(w, GUI_WHITE)),
    SETTER('T', TEXT_SetBkColor(w, GUI_BLACK)),
    SETTER('T', WIDGET_SetEffect(w, &WIDGET_Effect_Simple)),
    SETTER('B', BUTTON_SetText(w, "Texts")),
    SETTER('B', BUTTON_SetBitmap(w, BUTTON_RELEASED, &Ring)),
    SETTER('B', BUTTON_SetFont(w, &WideFont)),
    SETTER('B', BUTTON_SetTextAlign(w, GUI_ALIGN_LEFT)),
    SETTER('B', BUTTON_SetBkColor(w, BUTTON_RELEASED, GUI_BLACK)),
    SETTER('B', BUTTON_SetTextColor(w, BUTTON_RELEASED, GUI_WHITE)),
    SETTER('B', BUTTON_SetPressed(w, 1)),
    SETTER('B', WIDGET_SetEffect(w, &WIDGET_Effect_None)),
    SETTER('B', WM_HideWindow(w)),
    SETTER('B', WM_SetSize(w, 9, 9)),
    SETTER('B', WM_DeleteWindow(w)),
    SETTER('E', EDIT_SetText(w, "Ten")),
    SETTER('E', EDIT_SetFont(w, &WideFont)),
    SETTER('E', EDIT_SetTextAlign(w, Centred)),
    SETTER('E', EDIT_SetTextColor(w, GUI_WHITE)),
    SETTER('E', EDIT_SetBkColor(w, GUI_BLACK)),
    SETTER('E', WM_SetFocus(w)),
    SETTER('F', FRAMEWIN_SetText(w, "Next")),
    SETTER('F', FRAMEWIN_SetTitleVis(w, 0)),
    SETTER('F', FRAMEWIN_SetBorderSize(w, 99)),
    SETTER('F', FRAMEWIN_SetClientColor(w, GUI_BLACK)),
    SETTER('F', FRAMEWIN_SetFont(w, &WideFont)),
    SETTER('M', METER_SetValue(w, 10)),
    SETTER('M', WM_SetFocus(w)),
};

const Setter Invisible[] = {
    SETTER('M', METER_SetValue(w, -1)),
    SETTER('T', TEXT_SetTextColor(w, 0x101010)),
    SETTER('T', TEXT_SetFont(w, &TooWideFont)),
    SETTER('T', TEXT_SetTextAlign(w, GUI_ALIGN_LEFT | GUI_ALIGN_VCENTER | 64)),
    SETTER('N', TEXT_SetFont(w, &WideFont)),
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
    SETTER('B', WM_DisableWindow(w)),
    SETTER('B', WM_SetFocus(w); WM_DisableWindow(w); WM_EnableWindow(w)),
    SETTER('B', WM_SetId(w, 2); WM_SetUserData(w, &w)),
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

    void onlyChangedCharactersArePainted_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<int>("same"); ///< characters
        QTest::newRow("in the middle") << QByteArray("|}~|") << QByteArray("|}|}") << 2;
        QTest::newRow("shorter") << QByteArray("}|~|") << QByteArray("}|") << 2;
        QTest::newRow("longer") << QByteArray("~|") << QByteArray("~||") << 2;
        QTest::newRow("all") << QByteArray("|}") << QByteArray("}") << 0;
    }
    void onlyChangedCharactersArePainted()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(int, same);
        const WM_Handle text = box('T');
        for (const GUI_Font *const font : {&GUI_Font6x8, &WideFont}) {
            TEXT_SetFont(text, font);
            TEXT_SetText(text, before);
            paintAnew();
            TEXT_SetText(text, after);
            paintAnew();
            QCOMPARE(display.damage.x0, Box.x0 + widthOf(after, *font, same));
            QCOMPARE(display.damage.x1, Box.x0 + std::max(widthOf(before, *font), widthOf(after, *font)) - 1);
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
            const auto &[string, font, width, height, dots] = kinds[i % 3];
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
            COMPARE_PAINTED(isTextDot(string, x0 + dx, y0 + dy, x, y, font));
        }
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
    }

    void editsKeepTheirCursorInSight_data()
    {
        QTest::addColumn<bool>("isWide");
        QTest::addColumn<int>("align");
        QTest::addColumn<int>("left");
        for (const bool isWide : {false, true}) {
            const char *const font = isWide ? "wide" : "6x8";
            QTest::addRow("%s, at the left", font) << isWide << int(GUI_ALIGN_LEFT) << 10;
            QTest::addRow("%s, centred", font) << isWide << int(GUI_ALIGN_HCENTER) << 10;
            QTest::addRow("%s, at the right", font) << isWide << int(GUI_ALIGN_RIGHT) << 10;
            QTest::addRow("%s, beyond the display", font) << isWide << int(GUI_ALIGN_LEFT) << 90;
        }
    }
    /// A text that fits stands where it is aligned; another one moves by an arrow only if it must, so that
    /// the cursor is seen whole.
    void editsKeepTheirCursorInSight()
    {
        QFETCH(bool, isWide);
        QFETCH(int, align);
        QFETCH(int, left);
        const GUI_Font &font = isWide ? WideFont : GUI_Font6x8;
        const GUI_Rect box = {left, 8, left + 49, 19};
        const GUI_Rect field = {left + 1, 9, std::min(left + 48, LCD_GetXSize() - 1), 18};
        const WM_Handle edit = EDIT_CreateEx(left, box.y0, 50, 12, 0, WM_VISIBLE, 1, 14);
        EDIT_SetFont(edit, &font);
        EDIT_SetTextAlign(edit, align);
        std::mt19937 generator(11);
        bool inserts = true;
        int textX = 0;
        for (int round = 0; round < 1000; ++round) {
            const char keys[] = {"<<<>>^$--##~|}ab"[generator() % 16], '\0'};
            inserts = inserts != (keys[0] == '~');
            WM_SetFocus(edit);
            pressKeys(keys);
            COMPARE_REPAINTED();
            const Dots focused = display.dots;
            WM_SetFocus(0);
            paintAnew();

            const QByteArray text = textOf(edit);
            const int position = EDIT_GetCursorCharPos(edit);
            const int cursorX = widthOf(text, font, position);
            const int end = widthOf(text + ' ', font, inserts ? text.size() : text.size() + 1);
            const int spare = field.x1 - field.x0 + 1 - widthOf(text, font);
            const int aligned = field.x0 + (align == GUI_ALIGN_LEFT ? int(spare > 0) : spare * align / 2);
            const int before = textX;
            textX = spare < 0 ? display.damage.x0 + 1 - cursorX : aligned;
            const int cursorEnd = inserts ? cursorX : widthOf(text + ' ', font, position + 1);
            GUI_Rect cursor = {textX + cursorX - 1, 9, textX + cursorEnd - 1, 9 + font.height - 1};
            if (spare >= 0) {
                cursor.x0 = std::clamp(cursor.x0, field.x0, field.x1);
                cursor.x1 = std::clamp(cursor.x1, cursor.x0, field.x1);
            } else {
                const int by = textX - before;
                QVERIFY(textX <= field.x0 + 1 && textX + end > field.x1);
                QVERIFY(by == 0 || std::strchr("<>^$", keys[0]) == nullptr || cursor.x0 - by < field.x0 ||
                        cursor.x1 - by > field.x1);
            }
            QVERIFY(display.isDamageWithin(cursor));
            COMPARE_PAINTED(onEdge(box, x, y) ||
                            (isWithin(field, x, y) && isTextDot(text, textX, 9, x, y, font)));
            COMPARE_DOTS(focused, dotsWhere([&](int x, int y) {
                             return isWithin(cursor, x, y) != (display.dots[y][x] == 0);
                         }));
        }
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
        const char kinds[] = {'B', 'E', 'T', 'F', 'M'};
        WM_Handle widgets[std::size(kinds)];
        std::transform(std::begin(kinds), std::end(kinds), widgets, box);
        const char *const texts[] = {"", "a", "Text", "Next", "a wide text"};
        const GUI_Font *const fonts[] = {&GUI_Font6x8, &WideFont};
        const WIDGET_Effect effects[] = {WIDGET_Effect_None, WIDGET_Effect_Simple, {3}, {-Far}, {Far}};
        for (int round = 0; round < 4000; ++round) {
            const WM_Handle w = widgets[generator() % 5];
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
                [&] { EDIT_AddKey(w, "x\b\x7F"[value % 3]), WM_SetFocus(widgets[value % 5]); },
                [&] { WM_SetSize(w, int(value % 70), int(value / 70 % 40)); },
                [&] { METER_SetValue(w, int(value % 60)); },
                [&] { (value % 3 == 0 ? WM_DisableWindow : WM_EnableWindow)(w); },
                [&] { WM_BringToTop(w), WM_MoveTo(w, int(value % 70), int(value / 70 % 40)); },
            };
            changes[generator() % std::size(changes)]();
            COMPARE_REPAINTED();
        }
    }
};

static const RegisteredTest<TestWidgets> registered;
#include "testwidgets.moc"
