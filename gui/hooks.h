#pragma once

#include "gui.h"

/// What the library needs of the device that it runs on. The library declares these hooks, the device's port
/// defines them. Places are within the display, rectangles are not empty: the library clips before it calls.
/// An index is a colour as the frame memory holds it.

// Display, lowest layer.

/// Makes the display ready. \return 0, or an error that `GUI_Init` passes on
int LCD_L0_Init();
void LCD_L0_On();
/// For displays that show a part of a larger memory.
void LCD_L0_SetOrg(int x, int y);
/// For displays with a palette.
void LCD_L0_SetLUTEntry(int index, GUI_Color color);

int LCD_L0_Color2Index(GUI_Color color);
GUI_Color LCD_L0_Index2Color(int index);
int LCD_L0_GetIndexMask();
using LCD_Index2ColorFunction = GUI_Color (*)(int index);
LCD_Index2ColorFunction LCD_L0_GetpfIndex2Color();

void LCD_L0_SetPixelIndex(int x, int y, int index);
int LCD_L0_GetPixelIndex(int x, int y);
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
void GUI_X_Log(const char *text);
void GUI_X_Warn(const char *text);
void GUI_X_ErrorOut(const char *text);

// Devices that other ports have.

/// A remote view of the display. \return 0 when it runs or there is none
int GUI_VNC_X_StartServer();
/// Prepares measuring one axis of a touch panel. \return the argument where there is none
std::uint32_t GUI_TOUCH_X_ActivateX(std::uint32_t value);
