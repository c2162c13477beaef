#pragma once

#include "gui.h"

/// The picture of the start page; empty until `loadStartBitmap`.
extern const GUI_Bitmap bmbmp_startup;

/// Fills the picture from the upper left corner of the touchscreen's frame buffer "/dev/fb0", which shows the
/// start picture then: a dot is lit where the frame's is 0 (black). What cannot be read stays dark. To be
/// called before the windows are made, on their thread.
void loadStartBitmap();
