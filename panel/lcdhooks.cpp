// The display that the graphics library draws on: the frame memory, one colour index per dot.

#include "lcdhooks.h"

#include "framememory.h"
#include "hooks.h"

#include <algorithm>

namespace
{
std::uint16_t *rowAt(int x, int y)
{
    return &pLcdBuffer[x + LCD_XSIZE * y];
}

/// To be called after the dots were written.
void raiseChanged()
{
    nLcdBufferChanged.store(1, std::memory_order_release);
}

void drawDot(std::uint16_t &dot, int index)
{
    if (index >= 0) {
        dot = static_cast<std::uint16_t>(index);
    }
}

/// One bit per dot, as the cells of texts have it.
void drawBitRow(std::uint16_t *target, const std::uint8_t *row, const LCD_Bits &bits)
{
    const int unset = bits.indices[0];
    const int set = bits.indices[bits.indexCount > 1 ? 1 : 0];
    const int end = bits.firstDot + bits.width;
    for (int dot = bits.firstDot; dot < end; ++dot) {
        drawDot(*target++, (row[dot >> 3] << (dot & 7) & 0x80) != 0 ? set : unset);
    }
}

void drawByteRow(std::uint16_t *target, const std::uint8_t *row, const LCD_Bits &bits)
{
    for (int dot = bits.firstDot; dot < bits.firstDot + bits.width; ++dot) {
        drawDot(*target++, bits.indices[row[dot] < bits.indexCount ? row[dot] : 0]);
    }
}
} // namespace

int LCD_L0_Init()
{
    BSP_LCD_Init();
    return 0;
}

int LCD_L0_GetXSize()
{
    return LCD_XSIZE;
}

int LCD_L0_GetYSize()
{
    return LCD_YSIZE;
}

void LCD_L0_On() {}

void LCD_L0_SetOrg(int, int) {}

void LCD_L0_SetLUTEntry(int, GUI_Color) {}

int LCD_L0_Color2Index(GUI_Color color)
{
    return LCD_Color2Index_1(color);
}

GUI_Color LCD_L0_Index2Color(int index)
{
    return LCD_Index2Color_1(index);
}

int LCD_L0_GetIndexMask()
{
    return LCD_GetIndexMask_1();
}

LCD_Index2ColorFunction LCD_L0_GetpfIndex2Color()
{
    return LCD_Index2Color_1;
}

void LCD_L0_SetPixelIndex(int x, int y, int index)
{
    BSP_LCD_SetCursor(x, y);
    BSP_LCD_WriteRAM_Prepare();
    BSP_LCD_WriteData(static_cast<std::uint16_t>(index));
}

int LCD_L0_GetPixelIndex(int x, int y)
{
    return BSP_LCD_GetPixel(x, y) & 0xFF;
}

void LCD_L0_XorPixel(int x, int y)
{
    LCD_L0_SetPixelIndex(x, y, 1 - LCD_L0_GetPixelIndex(x, y));
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
        std::fill_n(rowAt(x0, y), x1 - x0 + 1, static_cast<std::uint16_t>(index));
    }
    raiseChanged();
}

void LCD_L0_DrawBitmap(int x, int y, const LCD_Bits &bits)
{
    const auto drawRow = bits.bitsPerPixel == 8 ? drawByteRow : drawBitRow;
    const std::uint8_t *source = bits.data;
    for (int line = 0; line < bits.height; ++line, source += bits.bytesPerLine) {
        drawRow(rowAt(x, y + line), source, bits);
    }
    raiseChanged();
}
