#include "focus.h"

#include "handles.h"
#include "messages.h"

namespace
{
WM_Handle s_focus = 0;
WM_Handle s_told =
    0; ///< which window was told last that it has the focus, 0 once it was told that it lost it

bool canHaveFocus(const Window &window)
{
    return window.isVisible() && window.isEnabled();
}

bool inherits(const Window &window)
{
    return window.takesKeys && canHaveFocus(window);
}

/// The first window from `first` to before `end`, from back to front, that inherits.
const Window *firstHeir(const Window *first, const Window *end)
{
    while (first != end && !inherits(*first)) {
        first = first->next();
    }
    return first != end ? first : nullptr;
}

/// Who gets the focus after `window`: who comes next in its parent, or first, else the parent, else who comes
/// next in the parent's parent, and so on. Null for nobody.
const Window *heirOf(const Window *window)
{
    const Window *heir = nullptr;
    while (heir == nullptr && window->parent() != nullptr) {
        const Window *const parent = window->parent();
        heir = firstHeir(window->following(), parent->following());
        if (heir == nullptr) {
            heir = firstHeir(parent->firstChild(), window);
        }
        if (heir == nullptr && inherits(*parent)) {
            heir = parent;
        }
        window = parent;
    }
    return heir;
}

void tell(WM_Handle handle, bool gained)
{
    if (Window *const window = findWindow(handle)) {
        window->focusChanged(gained);
        send(handle, gained ? WM_SET_FOCUS : WM_KILL_FOCUS);
    }
}
} // namespace

void settleFocus()
{
    const Window *const window = findWindow(s_focus);
    if (window != nullptr && !canHaveFocus(*window)) {
        const Window *const heir = heirOf(window);
        WM_SetFocus(heir != nullptr ? heir->handle() : 0);
    }
}

void WM_SetFocus(WM_Handle window)
{
    const Window *const next = findWindow(window);
    if (window != 0 && (next == nullptr || !canHaveFocus(*next))) {
        return;
    }
    s_focus = window;
    // Whoever is told may move the focus on: what is told last counts.
    while (s_told != s_focus) {
        const bool gains = s_told == 0;
        const WM_Handle told = gains ? s_focus : s_told;
        s_told = gains ? s_focus : 0;
        tell(told, gains);
    }
}

WM_Handle WM_GetFocus()
{
    return findWindow(s_focus) != nullptr ? s_focus : 0;
}

int GUI_SendKeyMsg(int key, int pressed)
{
    if (WM_GetFocus() == 0) {
        return 0;
    }
    WM_Message message;
    message.id = WM_KEY;
    message.key = key;
    message.pressed = pressed != 0 ? 1 : 0;
    WM_SendMessage(WM_GetFocus(), message);
    return 1;
}
