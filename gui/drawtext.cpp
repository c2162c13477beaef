#include "display.h"
#include "drawing.h"

#include <cstring>

namespace
{
/// Characters beyond this do not count when a width is worked out; no display comes near.
constexpr int LongestText = 0xFFFFF;

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

Point onDisplay(Point at)
{
    const Point &origin = drawingState().origin;
    return {bounded(at.x) + origin.x, bounded(at.y) + origin.y};
}

bool isWithinFont(int size)
{
    return size >= 1 && size <= GUI_FONT_MAX;
}
} // namespace

bool isUsable(const GUI_Font *font)
{
    return font != nullptr && isWithinFont(font->width) && isWithinFont(font->height);
}

int textWidth(const GUI_Font &font, std::string_view text)
{
    int width = 0;
    for (const char character : text.substr(0, LongestText)) {
        width += font.glyph(static_cast<unsigned char>(character)).width;
    }
    return width;
}

Rect textDots(const GUI_Font &font, std::string_view text)
{
    Rect dots = NoRect;
    int left = 0;
    for (const char character : text.substr(0, LongestText)) {
        const GUI_Glyph &glyph = font.glyph(static_cast<unsigned char>(character));
        dots = united(dots, {left + glyph.left, glyph.top, left + glyph.right, glyph.bottom});
        left += glyph.width;
    }
    return dots;
}

Point alignedText(const Rect &area, int width, const GUI_Font &font, int align)
{
    return {alignedSpan(area.x0, area.x1, width, (align & GUI_ALIGN_HCENTER) != 0,
                        (align & GUI_ALIGN_RIGHT) != 0),
            alignedSpan(area.y0, area.y1, font.height, (align & GUI_ALIGN_VCENTER) != 0,
                        (align & GUI_ALIGN_BOTTOM) != 0)};
}

void drawText(const char *text, Point at, const Rect &area)
{
    const Point &origin = drawingState().origin;
    const Rect outer = Display::clip();
    Display::setClip(intersection(outer, moved(area, origin.x, origin.y)));
    drawString(text, onDisplay(at));
    Display::setClip(outer);
}

void GUI_DispStringAt(const char *text, int x, int y)
{
    drawString(text, onDisplay({x, y}));
}

void GUI_DispStringInRect(const char *text, const GUI_Rect &rect, int align)
{
    const Rect area = bounded(rect);
    drawText(text, alignedText(area, GUI_GetStringWidth(text), *drawingState().font, align), area);
}

int GUI_GetStringWidth(const char *text)
{
    return text != nullptr ? textWidth(*drawingState().font, {text, strnlen(text, LongestText)}) : 0;
}
