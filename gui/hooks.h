#pragma once

#include "gui.h"

/// What the library calls of the device that it runs on, no more. The library declares these hooks, the
/// device's port defines them. Places are within the display, rectangles are not empty: the library clips
/// before it calls. An index is a colour as the frame memory holds it.

// Display, lowest layer.

/// Makes the display ready. \return 0, or an error that `GUI_Init` passes on
int LCD_L0_Init();
/// Size in dots, asked for once after each `LCD_L0_Init` and bounded to 0..16383.
int LCD_L0_GetXSize();
int LCD_L0_GetYSize();
/// Switches the display on, once it is ready.
void LCD_L0_On();

int LCD_L0_Color2Index(GUI_Color color);

void LCD_L0_SetPixelIndex(int x, int y, int index);
void LCD_L0_XorPixel(int x, int y);
void LCD_L0_DrawHLine(int x0, int y, int x1, int index);
void LCD_L0_DrawVLine(int x, int y0, int y1, int index);
void LCD_L0_FillRect(int x0, int y0, int x1, int y1, int index);

/// A piece of a bitmap that lies within the display.
struct LCD_Bits {
    const std::uint8_t *data; ///< first row
    int bytesPerLine;
    int bitsPerPixel; ///< 1 (leftmost dot in bit 7) or 8
    int firstDot;     ///< the dot of each row to begin with
    int width;
    int height;
    /// Frame memory's index for each value of a dot; below 0: the dot stays as it is.
    const int *indices;
    int indexCount; ///< values from here on count as 0
};
void LCD_L0_DrawBitmap(int x, int y, const LCD_Bits &bits);

// Operating system.

void GUI_X_Init();
/// Milliseconds; wraps.
std::uint32_t GUI_X_GetTime();
void GUI_X_Delay(std::uint32_t ms);
/// Called while the library has nothing to do.
void GUI_X_ExecIdle();
/// Called when the library cannot do what it was asked for, with a text for the developer.
void GUI_X_Warn(const char *text);
