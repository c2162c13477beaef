#pragma once

#include "window.h"

#include <memory>

/// Size and place of a window within its parent, as the application gave it.
struct Place {
    int x, y, width, height;
};

/// The same on the display, bounded.
Rect placed(const Window &parent, const Place &place);

/// Creates a window as `WM_CreateWindow` says. \return its handle, 0 if there can be none
WM_Handle addWindow(std::unique_ptr<Window> window, const Place &place, WM_Handle parent, int flags,
                    int id = 0);

/// Deletes all windows, the desktop as well. No window can be created until `createDesktop`.
void deleteAllWindows();
/// As large as the display.
void createDesktop();
