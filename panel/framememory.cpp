#include "framememory.h"

#include <algorithm>
#include <iterator>
#include <semaphore.h>

std::uint16_t pLcdBuffer[LCD_XSIZE * LCD_YSIZE];
std::atomic<int> nLcdBufferChanged{0};

namespace
{
static_assert((LCD_XSIZE & (LCD_XSIZE - 1)) == 0 && (LCD_YSIZE & (LCD_YSIZE - 1)) == 0, "see place()");

/// Counts the times that the flag was raised, and the ends of the wait.
class Changes
{
public:
    Changes() { sem_init(&m_count, 0, 0); }
    void add() { sem_post(&m_count); }
    void await() { sem_wait(&m_count); }

private:
    sem_t m_count;
};
Changes changes;

int nCurX = 0;
int nCurY = 0;

std::uint16_t &place(int x, int y)
{
    return pLcdBuffer[(x & (LCD_XSIZE - 1)) + LCD_XSIZE * (y & (LCD_YSIZE - 1))];
}
} // namespace

// Behind the dots, and as an exchange: thread_lcd lowers the flag before it reads, so no change is missed.
void raiseLcdChanged()
{
    if (nLcdBufferChanged.exchange(1, std::memory_order_acq_rel) == 0) {
        changes.add();
    }
}

void awaitLcdChange()
{
    changes.await();
}

void endLcdWait()
{
    changes.add();
}

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
    raiseLcdChanged();
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
