#include "framememory.h"

#include <algorithm>
#include <iterator>

std::uint16_t pLcdBuffer[LCD_XSIZE * LCD_YSIZE];
std::atomic<int> nLcdBufferChanged{0};

namespace
{
static_assert((LCD_XSIZE & (LCD_XSIZE - 1)) == 0 && (LCD_YSIZE & (LCD_YSIZE - 1)) == 0, "see place()");

int nCurX = 0;
int nCurY = 0;

std::uint16_t &place(int x, int y)
{
    return pLcdBuffer[(x & (LCD_XSIZE - 1)) + LCD_XSIZE * (y & (LCD_YSIZE - 1))];
}
} // namespace

void BSP_LCD_Init()
{
    std::fill(std::begin(pLcdBuffer), std::end(pLcdBuffer), std::uint16_t(0));
    BSP_LCD_SetCursor(0, 0);
}

void BSP_LCD_SetCursor(int x, int y)
{
    nCurX = x & (LCD_XSIZE - 1);
    nCurY = y & (LCD_YSIZE - 1);
}

void BSP_LCD_WriteRAM_Prepare() {}

void BSP_LCD_WriteData(std::uint16_t value)
{
    place(nCurX, nCurY) = value;
    const bool isRowEnd = nCurX + 1 == LCD_XSIZE;
    BSP_LCD_SetCursor(nCurX + 1, nCurY + (isRowEnd ? 1 : 0));
    // After the dot: thread_lcd lowers the flag before it reads, so no change is missed.
    nLcdBufferChanged.store(1, std::memory_order_release);
}

std::uint16_t BSP_LCD_ReadData()
{
    return place(nCurX, nCurY);
}

void BSP_LCD_SetPixel(int x, int y, std::uint16_t value)
{
    place(x, y) = value;
}

std::uint16_t BSP_LCD_GetPixel(int x, int y)
{
    return place(x, y);
}
