#pragma once

/// Size of the LCD, in dots.
constexpr int LCD_XSIZE = 128;
constexpr int LCD_YSIZE = 64;
