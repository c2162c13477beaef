#pragma once

#include "geometry.h"

/// What the drawing operations draw with.
struct DrawingState {
    Point origin{0, 0};      ///< of the application's coordinates, on the display
    Rect piece = Everywhere; ///< what the window manager allows
    Rect userClip = Everywhere;
    GUI_Color color = GUI_BLACK;
    GUI_Color background = GUI_WHITE;
    const GUI_Font *font = &GUI_Font6x8;
    GUI_TextMode mode = GUI_TEXT_SOLID;
};

const DrawingState &drawingState();

/// Back to black on white on all of the display.
void resetDrawing();

/// While it lives, drawing is relative to a window, goes into one piece of it and begins with the defaults.
class PaintScope
{
public:
    PaintScope(Point origin, const Rect &piece);
    ~PaintScope();
    PaintScope(const PaintScope &) = delete;
    PaintScope &operator=(const PaintScope &) = delete;

private:
    DrawingState m_outer;
};

/// Characters beyond this do not count when a width is worked out; no display comes near.
constexpr int LongestText = 0xFFFFF;

/// Where a text of `length` characters begins within `area`.
Point alignedText(const Rect &area, int length, const GUI_Font &font, int align);
/// Characters in a text, bounded so that its width in dots is harmless; of null: 0.
int textLength(const char *text);
