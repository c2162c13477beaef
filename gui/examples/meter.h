#pragma once

#include "gui.h"

/// A bar that shows a value between 0 and a maximum, in a frame. With the focus its frame is twice as thick,
/// and the left and right arrows change the value by 1, of which the parent is told (`WM_VALUE_CHANGED`).
///
/// As all operations of the library: for its thread, and handles of anything else are ignored.

/// At 0 at first. `max` 1 and up, less counts as 1. \return as `WM_CreateWindow`
WM_Handle METER_CreateEx(int x, int y, int width, int height, WM_Handle parent, int flags, int id, int max);
/// Bounded to 0..maximum.
void METER_SetValue(WM_Handle meter, int value);
int METER_GetValue(WM_Handle meter);
