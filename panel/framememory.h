#pragma once

#include "lcdsize.h"

#include <atomic>
#include <cstdint>

/// The frame memory into which the graphics library draws: one colour index per dot, row after row; index 0
/// is a lit (black) dot, any other value a dark one. The keypad thread writes, `thread_lcd` reads, without a
/// lock: what changes while a frame is sent raises the flag again and goes out with the next one.
extern std::uint16_t pLcdBuffer[LCD_XSIZE * LCD_YSIZE];

/// 1 after the frame memory was written and until `thread_lcd` takes notice.
extern std::atomic<int> nLcdBufferChanged;

/// Fills the frame memory with 0 and sets the cursor to (0, 0).
void BSP_LCD_Init();

/// The cursor of `BSP_LCD_WriteData` and `BSP_LCD_ReadData`. Coordinates count modulo the size of the display
/// here and below, so that no place is outside.
void BSP_LCD_SetCursor(int x, int y);
/// Other controllers have to be told before data are written.
void BSP_LCD_WriteRAM_Prepare();
/// Stores at the cursor, which moves to the right, at the end of a row to the next one and at the end of the
/// last row to (0, 0). Raises `nLcdBufferChanged`.
void BSP_LCD_WriteData(std::uint16_t value);
std::uint16_t BSP_LCD_ReadData();

/// A dot, past the cursor and without raising `nLcdBufferChanged`.
void BSP_LCD_SetPixel(int x, int y, std::uint16_t value);
std::uint16_t BSP_LCD_GetPixel(int x, int y);
