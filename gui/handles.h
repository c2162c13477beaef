#pragma once

#include "window.h"

/// Owns the windows. A handle is a slot of the table and the number of that slot's windows so far, so that a
/// handle never comes back.
namespace Handles
{
/// \return the handle, 0 when there are too many windows
WM_Handle add(std::unique_ptr<Window> &window);
/// Destroys the window; its handle is dead from then on.
void release(WM_Handle handle);
void releaseAll();
} // namespace Handles
