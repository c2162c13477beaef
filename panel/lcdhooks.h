#pragma once

#include "gui.h"

/// What the display offers beyond the hooks that the graphics library calls. The display shows all of its
/// memory and has no palette.
void LCD_L0_SetOrg(int x, int y);
void LCD_L0_SetLUTEntry(int index, GUI_Color color);

GUI_Color LCD_L0_Index2Color(int index);
int LCD_L0_GetIndexMask();
using LCD_Index2ColorFunction = GUI_Color (*)(int index);
LCD_Index2ColorFunction LCD_L0_GetpfIndex2Color();

/// Of a dot within the display; the lowest 8 bits of what the frame memory holds.
int LCD_L0_GetPixelIndex(int x, int y);
