#include "focus.h"
#include "handles.h"
#include "windowmanager.h"

namespace
{
Point sizeOf(const Rect &rect)
{
    return {rect.x1 - rect.x0 + 1, rect.y1 - rect.y0 + 1};
}

void setEnabled(WM_Handle window, bool enabled)
{
    if (Window *const found = findMovable(window)) {
        found->setEnabled(enabled);
        settleFocus();
    }
}
} // namespace

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
        settleFocus();
    }
}

int WM_IsVisible(WM_Handle window)
{
    const Window *const found = findWindow(window);
    return found != nullptr && found->isVisible() ? 1 : 0;
}

void WM_EnableWindow(WM_Handle window)
{
    setEnabled(window, true);
}

void WM_DisableWindow(WM_Handle window)
{
    setEnabled(window, false);
}

int WM_IsEnabled(WM_Handle window)
{
    const Window *const found = findWindow(window);
    return found != nullptr && found->isEnabled() ? 1 : 0;
}

void WM_MoveTo(WM_Handle window, int x, int y)
{
    if (Window *const shifted = findMovable(window)) {
        const Point size = sizeOf(shifted->rect());
        shifted->setRect(placed(*shifted->parent(), {x, y, size.x, size.y}));
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
        sized->setRect(placed(*sized->parent(), {rect.x0 - client.x0, rect.y0 - client.y0, width, height}));
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
    while (item != nullptr && item != end && item->id != id) {
        item = item->next();
    }
    return item != nullptr && item != end ? item->handle() : 0;
}

void WM_SetId(WM_Handle window, int id)
{
    if (Window *const item = findWindow(window)) {
        item->id = id;
    }
}

int WM_GetId(WM_Handle window)
{
    const Window *const item = findWindow(window);
    return item != nullptr ? item->id : 0;
}

void WM_SetUserData(WM_Handle window, void *data)
{
    if (Window *const keeper = findWindow(window)) {
        keeper->userData = data;
    }
}

void *WM_GetUserData(WM_Handle window)
{
    const Window *const keeper = findWindow(window);
    return keeper != nullptr ? keeper->userData : nullptr;
}

GUI_Rect WM_GetWindowRect(WM_Handle window)
{
    const Window *const found = findWindow(window);
    return found != nullptr ? found->rect() : NoRect;
}

GUI_Rect WM_GetBounds(WM_Handle window)
{
    const Rect rect = WM_GetWindowRect(window);
    return moved(rect, -rect.x0, -rect.y0);
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
