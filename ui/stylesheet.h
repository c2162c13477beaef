#pragma once

/// Gives the application the look of the touchscreen: style sheet and font. GUI thread only.
void setTouchscreenStyle();
