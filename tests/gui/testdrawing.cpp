#include "testdisplay.h"
#include "testregistry.h"

#include <cstring>
#include <limits>

namespace
{
constexpr int Far = std::numeric_limits<int>::max();

const std::uint8_t Dots11x3[3][2] = {{0xA5, 0x40}, {0xFF, 0x80}, {0x00, 0x60}};
const std::uint8_t Shades[2][3] = {{0, 1, 2}, {3, 4, 255}};
const GUI_Color Palette[4] = {GUI_WHITE, GUI_BLACK, 0x404040, 0xC0C0C0};
const GUI_Bitmap PictureOf11x3 = {11, 3, 2, 1, &Dots11x3[0][0], Palette, 2};
const GUI_Bitmap ShadesOf3x2 = {3, 2, 3, 8, &Shades[0][0], Palette, 4};

void drawText(const GUI_Font &font, GUI_TextMode mode, const char *text, int x)
{
    GUI_SetFont(&font);
    GUI_SetTextMode(mode);
    GUI_DispStringAt(text, x, 0);
}

/// Draws `Picture`.
Dots drawnOver(const Dots &before)
{
    start();
    display.dots = before;
    GUI_DrawLine(0, 0, 17, 5);
    GUI_DrawLine(0, 13, 3, 5);
    GUI_DrawLine(19, 7, 5, 11);
    GUI_DrawLine(7, 13, 9, 11);
    GUI_DrawPoint(14, 13);
    GUI_DrawHLine(0, 20, 29);
    GUI_DrawVLine(20, 2, 5);
    GUI_DrawHLine(2, 22, 21);
    GUI_DrawRect({24, 2, 29, 5});
    GUI_DrawRect({24, 7, 29, 7});
    GUI_FillRect({32, 0, 35, 2});
    GUI_ClearRect({32, 4, 35, 6});
    GUI_InvertRect({32, 8, 35, 10});
    GUI_DrawBitmap(PictureOf11x3, 38, 0);
    GUI_DrawBitmap(ShadesOf3x2, 38, 4);
    GUI_DispStringInRect("g}", {38, 8, 46, 13}, GUI_ALIGN_RIGHT);
    drawText(GUI_Font6x8, GUI_TEXT_SOLID, "g\xC4", 51);
    drawText(GUI_Font6x8, GUI_TEXT_TRANSPARENT, "g\xC4", 64);
    drawText(GUI_Font16, GUI_TEXT_XOR, "2g", 77);
    return display.dots;
}

/// What the operations do to a dot: '#' black, 'O' white, 'x' inverted, '.' as it was.
const char *const Picture[14] = {
    "##..................##########..####..#O#OO#O#O#O..OOOOOO#OOO#O.......#...#......................",
    "..####..........................####..#########OO..OOOOOOOO#OOO.........#........................",
    "......###...........#...######..####..OOOOOOOOO##..O####OO#O#OO..####..#.#....xxxxx..............",
    ".........###........#...#....#.....................#OOO#O#OOO#O.#...#.#...#..xxxxxxx.............",
    "............####....#...#....#..OOOO..O##..........#OOO#O#####O.#...#.#####..xx...xx.............",
    "...#............##..#...######..OOOO..OOO..........O####O#OOO#O..####.#...#.......xx...xxx.xx....",
    "...#............................OOOO...............OOOO#O#OOO#O.....#.#...#.......xx..xxxxxxx....",
    "..#...............##....######.....................O###OOOOOOOO..###.............xxx..xx...xx....",
    "..#...........####..............xxxx..OOOOOOO##.................................xxx...xx...xx....",
    ".#.........###..................xxxx..OOOOOOOO#................................xxx....xx...xx....",
    ".#.....####.....................xxxx..O####OOO#...............................xxx.....xx...xx....",
    ".#...##..#............................#OOO#OOOO..............................xxxxxxx..xxxxxxx....",
    "#.......#.............................#OOO#OOO#..............................xxxxxxx...xxx.xx....",
    "#......#......#.......................O####OOO#............................................xx....",
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
        }
        QCOMPARE(LCD_Index2Color_1(-2), GUI_BLACK);
        QCOMPARE(LCD_Index2Color_1(3), GUI_WHITE);
    }

    /// The fonts were looked at: each character but the two spaces, the two hyphens and the controls has its
    /// own picture, letters of a kind are equally high, digits equally wide, and accents leave the letter as
    /// it is. Who changes a picture looks at that again.
    void fontsAreAsLookedAt()
    {
        for (const auto &[font, sum] : {std::pair(&GUI_Font6x8, 12166), {&GUI_Font16, 21008}}) {
            QByteArray pictures;
            for (int code = 0; code <= 0xFF; ++code) {
                const GUI_Glyph &glyph = font->glyph(static_cast<unsigned char>(code));
                pictures += char(glyph.width);
                pictures.append(reinterpret_cast<const char *>(glyph.rows), font->height * font->rowBytes());
            }
            QCOMPARE(int(qChecksum(pictures.constData(), uint(pictures.size()))), sum);
        }
    }

    void operationsLookLikeTheirPicture()
    {
        const Dots onWhite = drawnOver(dotsWhere([](int, int) { return false; }));
        const Dots onBlack = drawnOver(dotsWhere([](int, int) { return true; }));
        for (int y = 0; y < 14; ++y) {
            QByteArray line;
            for (int x = 0; x < int(std::strlen(Picture[y])); ++x) {
                line += "#x.O"[2 * onWhite[y][x] + onBlack[y][x]];
            }
            QCOMPARE(line, QByteArray(Picture[y]));
        }
    }

    void farCoordinatesAreCutByTheClipRectangle()
    {
        const GUI_Rect clip = {3, -Far, 99, Far};
        GUI_SetClipRect(&clip);
        GUI_DrawLine(-Far - 1, 5, Far, 5);
        GUI_DrawLine(Far, Far, Far, -Far - 1);
        GUI_FillRect({-Far - 1, 40, Far, Far});
        GUI_DrawRect({-Far - 1, -Far - 1, Far, Far});
        GUI_DispStringAt("far", Far, -Far);
        GUI_DispStringInRect("far", {-Far - 1, -Far - 1, Far, Far}, GUI_ALIGN_RIGHT | GUI_ALIGN_BOTTOM);
        GUI_DrawBitmap(PictureOf11x3, Far, Far);
        COMPARE_DOTS(display.dots,
                     dotsWhere([](int x, int y) { return x >= 3 && x <= 99 && (y == 5 || y >= 40); }));
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
        const GUI_Font flatFont = {6, 0, GUI_Font6x8.glyphs};
        GUI_SetFont(&flatFont);
        GUI_DispStringAt(nullptr, 0, 0);
        QCOMPARE(GUI_GetStringWidth(nullptr), 0);
        QVERIFY(!display.isDamaged() && GUI_GetFont() == &GUI_Font6x8);
    }
};

static const RegisteredTest<TestDrawing> registered;
#include "testdrawing.moc"
