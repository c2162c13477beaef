#include "display.h"

namespace
{
Rect s_display = NoRect;
Rect s_clip = NoRect;

/// Cuts `bits`, whose upper left dot is at the place, to the clip rectangle. \return false if nothing is left
bool cut(int &x, int &y, LCD_Bits &bits)
{
    const Rect part = intersection({x, y, x + bits.width - 1, y + bits.height - 1}, s_clip);
    if (isEmpty(part)) {
        return false;
    }
    bits.firstDot += part.x0 - x;
    bits.data += static_cast<std::ptrdiff_t>(part.y0 - y) * bits.bytesPerLine;
    bits.width = part.x1 - part.x0 + 1;
    bits.height = part.y1 - part.y0 + 1;
    x = part.x0;
    y = part.y0;
    return true;
}
} // namespace

int Display::start()
{
    s_display = NoRect;
    const int error = LCD_L0_Init();
    if (error == 0) {
        s_display.x1 = std::clamp(LCD_L0_GetXSize(), 0, FarthestPlace) - 1;
        s_display.y1 = std::clamp(LCD_L0_GetYSize(), 0, FarthestPlace) - 1;
        LCD_L0_On();
    }
    s_clip = s_display;
    return error;
}

const Rect &Display::rect()
{
    return s_display;
}

void Display::setClip(const Rect &clip)
{
    s_clip = intersection(clip, s_display);
}

const Rect &Display::clip()
{
    return s_clip;
}

void Display::fill(const Rect &rect, int index)
{
    const Rect part = intersection(rect, s_clip);
    if (isEmpty(part)) {
        return;
    }
    if (part.y0 == part.y1) {
        if (part.x0 == part.x1) {
            LCD_L0_SetPixelIndex(part.x0, part.y0, index);
        } else {
            LCD_L0_DrawHLine(part.x0, part.y0, part.x1, index);
        }
    } else if (part.x0 == part.x1) {
        LCD_L0_DrawVLine(part.x0, part.y0, part.y1, index);
    } else {
        LCD_L0_FillRect(part.x0, part.y0, part.x1, part.y1, index);
    }
}

void Display::invert(const Rect &rect)
{
    const Rect part = intersection(rect, s_clip);
    for (int y = part.y0; y <= part.y1; ++y) {
        for (int x = part.x0; x <= part.x1; ++x) {
            LCD_L0_XorPixel(x, y);
        }
    }
}

void Display::drawBits(int x, int y, const LCD_Bits &bits)
{
    LCD_Bits part = bits;
    if (cut(x, y, part)) {
        LCD_L0_DrawBitmap(x, y, part);
    }
}

void Display::invertBits(int x, int y, const LCD_Bits &bits)
{
    LCD_Bits part = bits;
    if (!cut(x, y, part)) {
        return;
    }
    for (int row = 0; row < part.height; ++row, part.data += part.bytesPerLine) {
        for (int column = 0; column < part.width; ++column) {
            const int dot = part.firstDot + column;
            if ((part.data[dot / 8] & 0x80 >> dot % 8) != 0) {
                LCD_L0_XorPixel(x + column, y + row);
            }
        }
    }
}

int LCD_GetXSize()
{
    return s_display.x1 + 1;
}

int LCD_GetYSize()
{
    return s_display.y1 + 1;
}
