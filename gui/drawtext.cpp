#include "display.h"
#include "drawing.h"

#include <cstring>

namespace
{
int alignedSpan(int first, int last, int size, bool centre, bool far)
{
    const int room = last - first + 1 - size;
    if (room <= 0 || !(centre || far)) {
        return first;
    }
    return first + (far ? room : room / 2);
}

/// Draws at a place on the display. Characters beyond the clip rectangle cost nothing but the way past them.
void drawString(const char *text, Point at)
{
    const DrawingState &state = drawingState();
    const GUI_Font &font = *state.font;
    const Rect &clip = Display::clip();
    if (text == nullptr || at.y > clip.y1 || at.y + font.height <= clip.y0) {
        return;
    }
    const int background = state.mode == GUI_TEXT_SOLID ? LCD_L0_Color2Index(state.background) : -1;
    const int indices[2] = {background, LCD_L0_Color2Index(state.color)};
    LCD_Bits cell{nullptr, font.rowBytes(), 1, 0, 0, font.height, indices, 2};
    for (; *text != '\0' && at.x <= clip.x1; ++text, at.x += cell.width) {
        const GUI_Glyph &glyph = font.glyph(static_cast<unsigned char>(*text));
        cell.width = glyph.width;
        if (at.x + glyph.width <= clip.x0) {
            continue;
        }
        cell.data = glyph.rows;
        if (state.mode == GUI_TEXT_XOR) {
            Display::invertBits(at.x, at.y, cell);
        } else {
            Display::drawBits(at.x, at.y, cell);
        }
    }
}

Point onDisplay(int x, int y)
{
    const Point &origin = drawingState().origin;
    return {bounded(x) + origin.x, bounded(y) + origin.y};
}
} // namespace

int textLength(const char *text)
{
    return text != nullptr ? static_cast<int>(strnlen(text, LongestText)) : 0;
}

Point alignedText(const Rect &area, int length, const GUI_Font &font, int align)
{
    return {alignedSpan(area.x0, area.x1, length * font.width, (align & GUI_ALIGN_HCENTER) != 0,
                        (align & GUI_ALIGN_RIGHT) != 0),
            alignedSpan(area.y0, area.y1, font.height, (align & GUI_ALIGN_VCENTER) != 0,
                        (align & GUI_ALIGN_BOTTOM) != 0)};
}

void GUI_DispStringAt(const char *text, int x, int y)
{
    drawString(text, onDisplay(x, y));
}

void GUI_DispStringInRect(const char *text, const GUI_Rect &rect, int align)
{
    const Rect area = bounded(rect);
    const Point at = alignedText(area, textLength(text), *drawingState().font, align);
    const Point &origin = drawingState().origin;
    const Rect outer = Display::clip();
    Display::setClip(intersection(outer, moved(area, origin.x, origin.y)));
    drawString(text, {at.x + origin.x, at.y + origin.y});
    Display::setClip(outer);
}

int GUI_GetStringWidth(const char *text)
{
    return textLength(text) * drawingState().font->width;
}
