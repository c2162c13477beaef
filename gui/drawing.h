#pragma once

#include "geometry.h"

#include <string_view>

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

/// Whether a font can be drawn with.
bool isUsable(const GUI_Font *font);
/// Of all cells of a text, in dots. Of a very long text only the beginning counts, so that the width is
/// harmless.
int textWidth(const GUI_Font &font, std::string_view text);
/// The smallest rectangle around the dots of a text whose first cell is at (0, 0).
Rect textDots(const GUI_Font &font, std::string_view text);
/// Where a text with cells of this width begins within `area`.
Point alignedText(const Rect &area, int width, const GUI_Font &font, int align);
/// As `GUI_DispStringAt`, cut off by `area`.
void drawText(const char *text, Point at, const Rect &area);
