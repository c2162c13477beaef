#include "testdisplay.h"

#include "hooks.h"

TestDisplay display;

void TestDisplay::put(int x, int y, int index)
{
    if (!isWithin({0, 0, width - 1, height - 1}, x, y)) {
        ++outside;
        return;
    }
    damage |= QRect(x, y, 1, 1);
    dots[y][x] = index & 1;
}

void start(int width, int height)
{
    display = TestDisplay();
    display.width = width;
    display.height = height;
    QCOMPARE(GUI_Init(), 0);
    display.forget();
}

void paintAnew()
{
    display.forget();
    WM_Exec();
}

QByteArray difference(const Dots &actual, const Dots &expected)
{
    for (int y = 0; y < display.height; ++y) {
        for (int x = 0; x < display.width; ++x) {
            if (actual[y][x] != expected[y][x]) {
                return "dot " + QByteArray::number(x) + ',' + QByteArray::number(y) + " is " +
                       (actual[y][x] == 0 ? "black" : "white");
            }
        }
    }
    return {};
}

bool isWithin(const GUI_Rect &rect, int x, int y)
{
    return x >= rect.x0 && x <= rect.x1 && y >= rect.y0 && y <= rect.y1;
}

bool isOnEdge(const GUI_Rect &rect, int x, int y)
{
    return isWithin(rect, x, y) && !isWithin({rect.x0 + 1, rect.y0 + 1, rect.x1 - 1, rect.y1 - 1}, x, y);
}

bool isTextDot(const char *text, int textX, int textY, int x, int y)
{
    const QByteArray characters(text);
    const int column = x - textX;
    const int row = y - textY;
    if (column < 0 || column >= 6 * characters.size() || row < 0 || row >= 8) {
        return false;
    }
    const GUI_Glyph &glyph = GUI_Font6x8.glyph(static_cast<unsigned char>(characters[column / 6]));
    return (glyph.rows[row] & 0x80 >> column % 6) != 0;
}

// The port.

int LCD_L0_Init()
{
    return display.initError;
}

int LCD_L0_GetXSize()
{
    return display.width;
}

int LCD_L0_GetYSize()
{
    return display.height;
}

void LCD_L0_On() {}

int LCD_L0_Color2Index(GUI_Color color)
{
    return LCD_Color2Index_1(color);
}

void LCD_L0_SetPixelIndex(int x, int y, int index)
{
    display.put(x, y, index);
}

void LCD_L0_XorPixel(int x, int y)
{
    display.put(x, y, 1 - display.dots[y][x]);
}

void LCD_L0_DrawHLine(int x0, int y, int x1, int index)
{
    LCD_L0_FillRect(x0, y, x1, y, index);
}

void LCD_L0_DrawVLine(int x, int y0, int y1, int index)
{
    LCD_L0_FillRect(x, y0, x, y1, index);
}

void LCD_L0_FillRect(int x0, int y0, int x1, int y1, int index)
{
    for (int y = y0; y <= y1; ++y) {
        for (int x = x0; x <= x1; ++x) {
            display.put(x, y, index);
        }
    }
}

void LCD_L0_DrawBitmap(int x, int y, const LCD_Bits &bits)
{
    for (int row = 0; row < bits.height; ++row) {
        const std::uint8_t *const data = bits.data + std::ptrdiff_t(row) * bits.bytesPerLine;
        for (int column = 0; column < bits.width; ++column) {
            const int dot = bits.firstDot + column;
            const int value = bits.bitsPerPixel == 8 ? data[dot] : data[dot / 8] >> (7 - dot % 8) & 1;
            const int index = bits.indices[value < bits.indexCount ? value : 0];
            if (index >= 0) {
                display.put(x + column, y + row, index);
            }
        }
    }
}

void GUI_X_Init() {}

std::uint32_t GUI_X_GetTime()
{
    return display.now;
}

void GUI_X_Delay(std::uint32_t ms)
{
    display.now += ms;
}

void GUI_X_ExecIdle() {}

void GUI_X_Warn(const char * /*text*/) {}
