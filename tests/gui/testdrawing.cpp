#include "testdisplay.h"
#include "testregistry.h"

#include <cmath>
#include <functional>
#include <limits>

namespace
{
constexpr int Far = std::numeric_limits<int>::max();
constexpr char Text[] = "g}\xC4~";

/// What a dot becomes.
enum Effect { Untouched, Black, White, Inverted };

const std::uint8_t Picture[3][2] = {{0xA5, 0x40}, {0xFF, 0x80}, {0x00, 0x60}};
const std::uint8_t Shades[2][3] = {{0, 1, 2}, {3, 4, 255}};
const GUI_Color Palette[4] = {GUI_WHITE, GUI_BLACK, 0x404040, 0xC0C0C0};
const GUI_Bitmap PictureOf11x3 = {11, 3, 2, 1, &Picture[0][0], Palette, 2};
const GUI_Bitmap ShadesOf3x2 = {3, 2, 3, 8, &Shades[0][0], Palette, 4};

bool in(int x, int y, int right, int bottom)
{
    return isWithin({0, 0, right, bottom}, x, y);
}

GUI_Rect at(int x, int y, int right, int bottom)
{
    return {x, y, x + right, y + bottom};
}

using Rule = std::function<Effect(int x, int y)>;

Rule block(int right, int bottom, Effect effect)
{
    return [=](int x, int y) { return in(x, y, right, bottom) ? effect : Untouched; };
}

Rule text(const GUI_Font &font, Effect lit, Effect dark, int right = 999, int bottom = 999)
{
    return [=, &font](int x, int y) {
        const bool isIn =
            in(x, y, std::min(right, widthOf(Text, font) - 1), std::min(bottom, font.height - 1));
        return !isIn ? Untouched : (isTextDot(Text, 0, 0, x, y, font) ? lit : dark);
    };
}

Effect outline(int x, int y)
{
    return in(x, y, 9, 6) && !in(x - 1, y - 1, 7, 4) ? Black : Untouched;
}

Effect picture(int x, int y)
{
    return !in(x, y, 10, 2) ? Untouched : ((Picture[y][x / 8] & 0x80 >> x % 8) != 0 ? Black : White);
}

Effect shades(int x, int y)
{
    return !in(x, y, 2, 1) ? Untouched : ("WBBWWW"[3 * y + x] == 'B' ? Black : White);
}

/// Draws at a place; the rule is seen from that place.
struct Operation {
    const char *name;
    std::function<void(int x, int y)> draw;
    Rule rule;
};

/// By rounding; the longer distance is odd, so that no dot lies in the middle.
Operation line(const char *name, int dx, int dy)
{
    const bool steep = std::abs(dy) > std::abs(dx);
    const int length = steep ? dy : dx;
    const double slope = 1.0 * (steep ? dx : dy) / length;
    return {name, [=](int x, int y) { GUI_DrawLine(x, y, x + dx, y + dy); },
            [=](int x, int y) {
                const int along = steep ? y : x;
                const bool lit =
                    along * (length - along) >= 0 && (steep ? x : y) == std::lround(along * slope);
                return lit ? Black : Untouched;
            }};
}

void drawText(const GUI_Font &font, GUI_TextMode mode, int x, int y)
{
    GUI_SetFont(&font);
    GUI_SetTextMode(mode);
    GUI_DispStringAt(Text, x, y);
}

const Operation Operations[] = {
    line("flat line", 17, 5),
    line("steep line upwards", 6, -13),
    line("flat line to the left", -41, 7),
    line("diagonal", 9, 9),
    {"point", [](int x, int y) { GUI_DrawPoint(x, y); }, block(0, 0, Black)},
    {"hline", [](int x, int y) { GUI_DrawHLine(y, x, x + 9); }, block(9, 0, Black)},
    {"vline", [](int x, int y) { GUI_DrawVLine(x, y, y + 9); }, block(0, 9, Black)},
    {"no line", [](int x, int y) { GUI_DrawHLine(y, x, x - 1); }, block(-1, 0, Black)},
    {"rectangle", [](int x, int y) { GUI_DrawRect(at(x, y, 9, 6)); }, outline},
    {"flat rectangle", [](int x, int y) { GUI_DrawRect(at(x, y, 9, 0)); }, block(9, 0, Black)},
    {"filled", [](int x, int y) { GUI_FillRect(at(x, y, 9, 6)); }, block(9, 6, Black)},
    {"cleared", [](int x, int y) { GUI_ClearRect(at(x, y, 9, 6)); }, block(9, 6, White)},
    {"inverted", [](int x, int y) { GUI_InvertRect(at(x, y, 9, 6)); }, block(9, 6, Inverted)},
    {"bitmap", [](int x, int y) { GUI_DrawBitmap(PictureOf11x3, x, y); }, picture},
    {"shades", [](int x, int y) { GUI_DrawBitmap(ShadesOf3x2, x, y); }, shades},
    {"text", [](int x, int y) { drawText(GUI_Font6x8, GUI_TEXT_SOLID, x, y); },
     text(GUI_Font6x8, Black, White)},
    {"dots", [](int x, int y) { drawText(GUI_Font6x8, GUI_TEXT_TRANSPARENT, x, y); },
     text(GUI_Font6x8, Black, Untouched)},
    {"inversion", [](int x, int y) { drawText(WideFont, GUI_TEXT_XOR, x, y); },
     text(WideFont, Inverted, Untouched)},
    {"wide text", [](int x, int y) { drawText(WideFont, GUI_TEXT_SOLID, x, y); },
     text(WideFont, Black, White)},
    {"text cut by a rectangle",
     [](int x, int y) { GUI_DispStringInRect(Text, at(x, y, 14, 5), GUI_ALIGN_RIGHT); },
     text(GUI_Font6x8, Black, White, 14, 5)},
};
} // namespace

class TestDrawing : public QObject
{
    Q_OBJECT

private slots:
    void init() { start(); }

    void colorsHaveTheNearerIndex()
    {
        for (const GUI_Color color : {0xFFFFFFU, 0x808080U, 0x00FF00U, 0xFFC0C0U, 0x0080FFU, 0xFF0033U}) {
            const bool bright =
                0.299 * (color >> 16) + 0.587 * (color >> 8 & 0xFF) + 0.114 * (color & 0xFF) > 127.5;
            QCOMPARE(LCD_Color2Index_1(color), int(bright));
            QCOMPARE(LCD_Color2Index_1(~color), int(!bright));
        }
        QCOMPARE(LCD_Index2Color_1(-2), GUI_BLACK);
        QCOMPARE(LCD_Index2Color_1(3), GUI_WHITE);
    }

    void operationsFollowTheirRuleWithinTheClipRectangle()
    {
        const Dots before = dotsWhere([](int x, int y) { return (x + y) % 2 == 0; });
        const GUI_Rect clips[] = {{-Far, -Far, Far, Far}, {50, 20, 59, 26}, {3, 3, 2, 2}};
        for (const Operation &operation : Operations) {
            for (int i = 0; i < 3 * 7 * 7; ++i) {
                const GUI_Rect &clip = clips[i % 3];
                const int x = std::array<int, 7>{-1000, -7, 0, 45, 52, 57, 125}[i / 3 % 7];
                const int y = std::array<int, 7>{-8, -2, 0, 15, 22, 25, 61}[i / 21];
                start();
                display.dots = before;
                GUI_SetClipRect(&clip);
                operation.draw(x, y);
                COMPARE_DOTS(display.dots, dotsWhere([&](int a, int b) {
                                 const Effect effect = operation.rule(a - x, b - y);
                                 const bool isBlack = before[b][a] == 0;
                                 return effect == Untouched || !isWithin(clip, a, b)
                                            ? isBlack
                                            : (effect == Inverted ? !isBlack : effect == Black);
                             }));
                QVERIFY2(display.outside == 0 && display.mostPaints <= 1, operation.name);
            }
        }
    }

    void farCoordinatesAreHarmless()
    {
        GUI_DrawLine(-Far - 1, 5, Far, 5);
        GUI_DrawLine(Far, Far, Far, -Far - 1);
        GUI_FillRect({-Far - 1, 40, Far, Far});
        GUI_DrawRect({-Far - 1, -Far - 1, Far, Far});
        GUI_DispStringAt("far", Far, -Far);
        GUI_DispStringInRect("far", {-Far - 1, -Far - 1, Far, Far}, GUI_ALIGN_RIGHT | GUI_ALIGN_BOTTOM);
        GUI_DrawBitmap(PictureOf11x3, Far, Far);
        COMPARE_DOTS(display.dots, dotsWhere([](int, int y) { return y == 5 || y >= 40; }));
    }

    void unusableArgumentsAreIgnored()
    {
        for (int i = 0; i < 5; ++i) {
            GUI_Bitmap bitmap = ShadesOf3x2;
            bitmap.bytesPerLine = i == 0 ? 2 : 3;
            bitmap.bitsPerPixel = i == 1 ? 4 : 8;
            bitmap.data = i == 2 ? nullptr : bitmap.data;
            bitmap.palette = i == 3 ? nullptr : Palette;
            bitmap.paletteSize = i == 4 ? 0 : 4;
            GUI_DrawBitmap(bitmap, 0, 0);
        }
        GUI_SetFont(nullptr);
        for (const auto [width, height] : {std::array{0, 8}, {17, 8}, {6, 0}, {6, 17}}) {
            const GUI_Font font = {static_cast<unsigned char>(width), static_cast<unsigned char>(height),
                                   GUI_Font6x8.glyphs};
            GUI_SetFont(&font);
        }
        GUI_DispStringAt(nullptr, 0, 0);
        QCOMPARE(GUI_GetStringWidth(nullptr), 0);
        QVERIFY(!display.isDamaged() && GUI_GetFont() == &GUI_Font6x8);
    }
};

static const RegisteredTest<TestDrawing> registered;
#include "testdrawing.moc"
