#pragma once

#include "gui.h"

/// Whether the display shows no difference.
bool looksSame(GUI_Color a, GUI_Color b);
/// Stores a colour. \return true if it looks different from the one before
bool changeColor(GUI_Color &color, GUI_Color value);
