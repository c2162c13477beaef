#include "drawing.h"

#include "display.h"

#include <cstdlib>
#include <utility>

namespace
{
DrawingState s_state;

void apply(const DrawingState &state)
{
    s_state = state;
    Display::setClip(intersection(state.piece, state.userClip));
}

Rect onDisplay(const Rect &rect)
{
    return moved(bounded(rect), s_state.origin.x, s_state.origin.y);
}

void fill(const Rect &rect, GUI_Color color)
{
    Display::fill(onDisplay(rect), LCD_L0_Color2Index(color));
}
} // namespace

const DrawingState &drawingState()
{
    return s_state;
}

void resetDrawing()
{
    apply(DrawingState());
}

PaintScope::PaintScope(Point origin, const Rect &piece)
    : m_outer(s_state)
{
    DrawingState state;
    state.origin = origin;
    state.piece = piece;
    apply(state);
}

PaintScope::~PaintScope()
{
    apply(m_outer);
}

void GUI_SetColor(GUI_Color color)
{
    s_state.color = color;
}

void GUI_SetBkColor(GUI_Color color)
{
    s_state.background = color;
}

GUI_Color GUI_GetColor()
{
    return s_state.color;
}

GUI_Color GUI_GetBkColor()
{
    return s_state.background;
}

void GUI_SetFont(const GUI_Font *font)
{
    if (isUsable(font)) {
        s_state.font = font;
    }
}

const GUI_Font *GUI_GetFont()
{
    return s_state.font;
}

void GUI_SetTextMode(GUI_TextMode mode)
{
    s_state.mode = mode;
}

void GUI_SetClipRect(const GUI_Rect *rect)
{
    s_state.userClip = rect != nullptr ? onDisplay(*rect) : Everywhere;
    apply(s_state);
}

void GUI_Clear()
{
    Display::fill(Display::clip(), LCD_L0_Color2Index(s_state.background));
}

void GUI_DrawPoint(int x, int y)
{
    fill({x, y, x, y}, s_state.color);
}

void GUI_DrawHLine(int y, int x0, int x1)
{
    fill({x0, y, x1, y}, s_state.color);
}

void GUI_DrawVLine(int x, int y0, int y1)
{
    fill({x, y0, x, y1}, s_state.color);
}

void GUI_DrawLine(int x0, int y0, int x1, int y1)
{
    const Rect ends = onDisplay({x0, y0, x1, y1});
    const Rect &clip = Display::clip();
    const bool steep = std::abs(ends.y1 - ends.y0) > std::abs(ends.x1 - ends.x0);
    // The longer direction is walked, from its lower end; the other one is `side`.
    Point from = steep ? Point{ends.y0, ends.x0} : Point{ends.x0, ends.y0};
    Point to = steep ? Point{ends.y1, ends.x1} : Point{ends.x1, ends.y1};
    if (from.x > to.x) {
        std::swap(from, to);
    }
    const std::int64_t length = to.x - from.x;
    const std::int64_t slope = to.y - from.y;
    const auto side = [&](int at) {
        const std::int64_t twice = 2 * std::abs(slope) * (at - from.x) + length;
        const int distance = length == 0 ? 0 : static_cast<int>(twice / (2 * length));
        return from.y + (slope < 0 ? -distance : distance);
    };
    const int index = LCD_L0_Color2Index(s_state.color);
    const int last = std::min(to.x, steep ? clip.y1 : clip.x1);
    for (int start = std::max(from.x, steep ? clip.y0 : clip.x0), end = start; start <= last; start = end) {
        const int across = side(start);
        while (end <= last && side(end) == across) {
            ++end;
        }
        Display::fill(steep ? Rect{across, start, across, end - 1} : Rect{start, across, end - 1, across},
                      index);
    }
}

void GUI_DrawRect(const GUI_Rect &rect)
{
    const Remainder outline(bounded(rect), shrunk(bounded(rect), 1));
    for (const Rect &side : outline) {
        GUI_FillRect(side);
    }
}

void GUI_FillRect(const GUI_Rect &rect)
{
    fill(rect, s_state.color);
}

void GUI_ClearRect(const GUI_Rect &rect)
{
    fill(rect, s_state.background);
}

void GUI_InvertRect(const GUI_Rect &rect)
{
    Display::invert(onDisplay(rect));
}

void GUI_DrawBitmap(const GUI_Bitmap &bitmap, int x, int y)
{
    const int depth = bitmap.bitsPerPixel;
    if ((depth != 1 && depth != 8) || bitmap.data == nullptr || bitmap.palette == nullptr ||
        bitmap.bytesPerLine * 8 < bitmap.width * depth) {
        return;
    }
    int indices[256];
    const int count = std::min(bitmap.paletteSize, 1 << depth);
    for (int i = 0; i < count; ++i) {
        indices[i] = LCD_L0_Color2Index(bitmap.palette[i]);
    }
    if (count > 0) {
        Display::drawBits(
            bounded(x) + s_state.origin.x, bounded(y) + s_state.origin.y,
            {bitmap.data, bitmap.bytesPerLine, depth, 0, bitmap.width, bitmap.height, indices, count});
    }
}
