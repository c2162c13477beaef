#include "color.h"

#include "hooks.h"

int LCD_Color2Index_1(GUI_Color color)
{
    // Rec. 601 luminance in thousandths; half of white's is the border.
    const unsigned luminance = 299 * (color >> 16 & 0xFF) + 587 * (color >> 8 & 0xFF) + 114 * (color & 0xFF);
    return luminance >= 127500 ? 1 : 0;
}

GUI_Color LCD_Index2Color_1(int index)
{
    return (index & LCD_GetIndexMask_1()) != 0 ? GUI_WHITE : GUI_BLACK;
}

int LCD_GetIndexMask_1()
{
    return 1;
}

bool looksSame(GUI_Color a, GUI_Color b)
{
    return LCD_L0_Color2Index(a) == LCD_L0_Color2Index(b);
}

bool changeColor(GUI_Color &color, GUI_Color value)
{
    const bool differs = !looksSame(color, value);
    color = value;
    return differs;
}
