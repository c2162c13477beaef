#include "windowmanager.h"

#include "color.h"
#include "display.h"
#include "focus.h"
#include "handles.h"
#include "hooks.h"
#include "messages.h"

#include <utility>

namespace
{
class Desktop final : public Window
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

/// The next one in it that can go, deepest first; itself when nothing is in it.
Window *deepest(Window *window)
{
    while (window->firstChild() != nullptr) {
        window = window->firstChild();
    }
    return window;
}

/// Deletes a tree that is out of everybody's reach by now, except for callbacks that know its handles.
void deleteTree(WM_Handle top)
{
    while (Window *const rest = findWindow(top)) {
        Window *const next = deepest(rest);
        const WM_Handle handle = next->handle();
        if (next != rest) {
            next->detach();
        }
        send(handle, WM_DELETE);
        Handles::release(handle);
    }
}
} // namespace

Rect placed(const Window &parent, const Place &place)
{
    const Rect client = parent.clientRect();
    const int x0 = client.x0 + boundedPlace(place.x);
    const int y0 = client.y0 + boundedPlace(place.y);
    return {x0, y0, x0 + std::max(boundedPlace(place.width), 0) - 1,
            y0 + std::max(boundedPlace(place.height), 0) - 1};
}

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
    added.id = id;
    added.attach(in, placed(*in, place), flags, handle);
    return handle;
}

void deleteAllWindows()
{
    // Again if a callback has started the library meanwhile.
    while (const WM_Handle desktop = std::exchange(s_desktop, 0)) {
        deleteTree(desktop);
    }
}

void createDesktop()
{
    std::unique_ptr<Window> window = std::make_unique<Desktop>();
    Window &desktop = *window;
    s_desktop = Handles::add(window);
    desktop.attach(nullptr, Display::rect(), WM_VISIBLE, s_desktop);
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
    doomed->setShown(false);
    settleFocus();
    // Whoever was told of the focus may have deleted it already.
    if (Window *const left = findMovable(window)) {
        left->detach();
        deleteTree(window);
    }
}

int WM_IsWindow(WM_Handle window)
{
    return findWindow(window) != nullptr ? 1 : 0;
}
