#pragma once

/// The look of the touchscreen.
extern const char *const touchscreenStyleSheet;
