#pragma once

#include "geometry.h"
#include "hooks.h"

/// The lowest layer of the library: cuts everything to the clip rectangle and hands it to the port, in pieces
/// as large as the port takes them. Nothing else draws through the port. Places are on the display; any are
/// fine, they are cut.
namespace Display
{
/// Starts the port's display, asks for its size and switches it on. \return as `LCD_L0_Init`; a display that
/// did not start has no dots
int start();
/// All of it.
const Rect &rect();

/// Nothing is drawn outside of `clip`, nor outside of the display.
void setClip(const Rect &clip);
const Rect &clip();

void fill(const Rect &rect, int index);
void invert(const Rect &rect);
void drawBits(int x, int y, const LCD_Bits &bits);
/// Inverts the dots whose bit is set; one bit per dot.
void invertBits(int x, int y, const LCD_Bits &bits);
} // namespace Display
