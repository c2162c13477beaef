#pragma once

#include "window.h"

#include <memory>
#include <type_traits>
#include <typeinfo>

/// Owns the windows. A handle is a slot of the table and the number of that slot's windows so far, so that a
/// handle never comes back.
namespace Handles
{
/// \return the handle, 0 when there are too many windows
WM_Handle add(std::unique_ptr<Window> &window);
/// Destroys the window; its handle is dead from then on.
void release(WM_Handle handle);
} // namespace Handles

/// The window of a handle, null if that is dead.
Window *findWindow(WM_Handle handle);

/// The same, but null, too, for the desktop and for a window that is about to be deleted: they stay as they
/// are.
Window *findMovable(WM_Handle handle);

/// The same for one kind of window; null for any other kind.
template <class Kind>
Kind *find(WM_Handle handle)
{
    Window *const window = findWindow(handle);
    if constexpr (std::is_final_v<Kind>) {
        // A comparison, where a cast would walk the base classes: setters are called in every cycle.
        return window != nullptr && typeid(*window) == typeid(Kind) ? static_cast<Kind *>(window) : nullptr;
    } else {
        return dynamic_cast<Kind *>(window);
    }
}
