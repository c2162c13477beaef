#include "handles.h"
#include "hooks.h"
#include "messages.h"
#include "widget.h"

namespace
{
/// Sizes, and places within the parent, go up to this. With the number of windows bounded by their handles,
/// no sum of places overflows.
constexpr int FarthestPlace = 16383;

class Desktop : public Window
{
public:
    void paint() override
    {
        GUI_SetBkColor(color);
        GUI_Clear();
    }

    GUI_Color color = GUI_WHITE;
};

WM_Handle s_desktop = 0;

int boundedPlace(int coordinate)
{
    return std::clamp(coordinate, -FarthestPlace, FarthestPlace);
}

Rect placed(const Window &parent, int x, int y, int width, int height)
{
    const Rect client = parent.clientRect();
    const int x0 = client.x0 + boundedPlace(x);
    const int y0 = client.y0 + boundedPlace(y);
    return {x0, y0, x0 + std::max(boundedPlace(width), 0) - 1, y0 + std::max(boundedPlace(height), 0) - 1};
}

/// Null for the desktop, too, and for a window that is about to be deleted: they stay as they are.
Window *findMovable(WM_Handle handle)
{
    Window *const window = findWindow(handle);
    return window != nullptr && window->parent() != nullptr ? window : nullptr;
}

/// The next one in it that can go, deepest first; itself when nothing is in it.
Window *deepest(Window *window)
{
    while (window->firstChild() != nullptr) {
        window = window->firstChild();
    }
    return window;
}
} // namespace

WM_Handle addWindow(std::unique_ptr<Window> window, const Place &place, WM_Handle parent, int flags, int id)
{
    Window *const in = findWindow(parent != 0 ? parent : s_desktop);
    if (in == nullptr || in->root() != findWindow(s_desktop)) {
        return 0;
    }
    Window &added = *window;
    const WM_Handle handle = Handles::add(window);
    if (handle == 0) {
        GUI_X_Warn("gui: too many windows");
        return 0;
    }
    added.attach(in, placed(*in, place.x, place.y, place.width, place.height), (flags & WM_VISIBLE) != 0,
                 handle, id);
    return handle;
}

void resetWindows()
{
    Handles::releaseAll();
    std::unique_ptr<Window> desktop = std::make_unique<Desktop>();
    Window &added = *desktop;
    s_desktop = Handles::add(desktop);
    added.attach(nullptr, DisplayRect, true, s_desktop, 0);
}

WM_Handle WM_GetDesktopWindow()
{
    return s_desktop;
}

void WM_SetDesktopColor(GUI_Color color)
{
    auto *const desktop = find<Desktop>(s_desktop);
    if (desktop != nullptr && changeColor(desktop->color, color)) {
        desktop->invalidate(desktop->rect());
    }
}

WM_Handle WM_CreateWindow(int x, int y, int width, int height, WM_Handle parent, int flags,
                          WM_Callback callback)
{
    auto window = std::make_unique<Window>();
    window->callback = callback;
    return addWindow(std::move(window), {x, y, width, height}, parent, flags);
}

void WM_DeleteWindow(WM_Handle window)
{
    Window *const doomed = findMovable(window);
    if (doomed == nullptr) {
        return;
    }
    doomed->detach();
    while (Window *const rest = findWindow(window)) {
        Window *const next = deepest(rest);
        const WM_Handle handle = next->handle();
        if (next != rest) {
            next->detach();
        }
        send(handle, WM_DELETE);
        Handles::release(handle);
    }
}

int WM_IsWindow(WM_Handle window)
{
    return findWindow(window) != nullptr ? 1 : 0;
}

void WM_ShowWindow(WM_Handle window)
{
    if (Window *const shown = findMovable(window)) {
        shown->setShown(true);
    }
}

void WM_HideWindow(WM_Handle window)
{
    if (Window *const hidden = findMovable(window)) {
        hidden->setShown(false);
    }
}

int WM_IsVisible(WM_Handle window)
{
    const Window *visible = findWindow(window);
    while (visible != nullptr && visible->isShown() && visible->parent() != nullptr) {
        visible = visible->parent();
    }
    return visible != nullptr && visible->isShown() ? 1 : 0;
}

void WM_MoveTo(WM_Handle window, int x, int y)
{
    if (Window *const shifted = findMovable(window)) {
        const Rect &rect = shifted->rect();
        shifted->setRect(placed(*shifted->parent(), x, y, rect.x1 - rect.x0 + 1, rect.y1 - rect.y0 + 1));
    }
}

void WM_MoveBy(WM_Handle window, int dx, int dy)
{
    if (const Window *const shifted = findMovable(window)) {
        const Rect client = shifted->parent()->clientRect();
        WM_MoveTo(window, shifted->rect().x0 - client.x0 + bounded(dx),
                  shifted->rect().y0 - client.y0 + bounded(dy));
    }
}

void WM_SetSize(WM_Handle window, int width, int height)
{
    if (Window *const sized = findMovable(window)) {
        const Rect &rect = sized->rect();
        const Rect client = sized->parent()->clientRect();
        sized->setRect(placed(*sized->parent(), rect.x0 - client.x0, rect.y0 - client.y0, width, height));
    }
}

void WM_BringToTop(WM_Handle window)
{
    if (Window *const raised = findMovable(window)) {
        raised->raise();
    }
}

void WM_BringToBottom(WM_Handle window)
{
    if (Window *const lowered = findMovable(window)) {
        lowered->lower();
    }
}

WM_Handle WM_GetParent(WM_Handle window)
{
    const Window *const child = findMovable(window);
    return child != nullptr ? child->parent()->handle() : 0;
}

WM_Handle WM_GetDialogItem(WM_Handle window, int id)
{
    const Window *const top = findWindow(window);
    if (top == nullptr) {
        return 0;
    }
    const Window *const end = top->following();
    const Window *item = top->firstChild();
    while (item != nullptr && item != end && item->id() != id) {
        item = item->next();
    }
    return item != nullptr && item != end ? item->handle() : 0;
}

int WM_GetId(WM_Handle window)
{
    const Window *const item = findWindow(window);
    return item != nullptr ? item->id() : 0;
}

GUI_Rect WM_GetWindowRect(WM_Handle window)
{
    const Window *const found = findWindow(window);
    return found != nullptr ? found->rect() : NoRect;
}

void WM_InvalidateWindow(WM_Handle window)
{
    if (Window *const invalid = findWindow(window)) {
        invalid->invalidate(invalid->rect());
    }
}

void WM_InvalidateRect(WM_Handle window, const GUI_Rect &rect)
{
    if (Window *const invalid = findWindow(window)) {
        invalid->invalidateLocal(bounded(rect));
    }
}
