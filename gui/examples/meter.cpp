#include "meter.h"

#include <algorithm>
#include <memory>

namespace
{
struct Meter {
    int max;
    int value;
};

GUI_Rect shrunk(const GUI_Rect &rect, int by)
{
    return {rect.x0 + by, rect.y0 + by, rect.x1 - by, rect.y1 - by};
}

/// The piece of the bar between two values.
GUI_Rect barBetween(WM_Handle handle, const Meter &meter, int from, int to)
{
    const GUI_Rect room = shrunk(WM_GetBounds(handle), 2);
    const std::int64_t width = std::max(room.x1 - room.x0 + 1, 0);
    const auto columns = [&](int value) { return static_cast<int>(width * value / meter.max); };
    return {room.x0 + columns(from), room.y0, room.x0 + columns(to) - 1, room.y1};
}

void paint(WM_Handle handle, const Meter &meter)
{
    const GUI_Rect bounds = WM_GetBounds(handle);
    GUI_ClearRect(bounds);
    GUI_DrawRect(bounds);
    if (WM_GetFocus() == handle) {
        GUI_DrawRect(shrunk(bounds, 1));
    }
    GUI_FillRect(barBetween(handle, meter, 0, meter.value));
}

/// Bounds, compares, stores, and invalidates what differs. \return true if it is another value
bool setValue(WM_Handle handle, Meter &meter, int value)
{
    const int before = meter.value;
    meter.value = std::clamp(value, 0, meter.max);
    const auto [lower, higher] = std::minmax({before, meter.value});
    WM_InvalidateRect(handle, barBetween(handle, meter, lower, higher));
    return meter.value != before;
}

void pressKey(WM_Handle handle, Meter &meter, int key)
{
    const int step = key == GUI_KEY_RIGHT ? 1 : (key == GUI_KEY_LEFT ? -1 : 0);
    if (setValue(handle, meter, meter.value + step)) {
        WM_NotifyParent(handle, WM_VALUE_CHANGED);
    }
}

void hear(WM_Message &message, void *state)
{
    auto *const meter = static_cast<Meter *>(state);
    switch (message.id) {
    case WM_PAINT:
        paint(message.window, *meter);
        break;
    case WM_KEY:
        if (message.pressed != 0) {
            pressKey(message.window, *meter, message.key);
        }
        break;
    case WM_SET_FOCUS:
    case WM_KILL_FOCUS:
        WM_InvalidateWindow(message.window);
        break;
    case WM_DELETE:
        delete meter;
        break;
    default:
        break;
    }
}

Meter *find(WM_Handle handle)
{
    return static_cast<Meter *>(WM_GetWidgetState(handle, hear));
}
} // namespace

WM_Handle METER_CreateEx(int x, int y, int width, int height, WM_Handle parent, int flags, int id, int max)
{
    auto meter = std::make_unique<Meter>(Meter{std::max(max, 1), 0});
    const WM_Handle handle =
        WM_CreateWidget(x, y, width, height, parent, flags | WM_TAKES_KEYS, id, hear, meter.get());
    if (handle != 0) {
        static_cast<void>(meter.release()); // until WM_DELETE
    }
    return handle;
}

void METER_SetValue(WM_Handle meter, int value)
{
    if (Meter *const found = find(meter)) {
        setValue(meter, *found, value);
    }
}

int METER_GetValue(WM_Handle meter)
{
    const Meter *const found = find(meter);
    return found != nullptr ? found->value : 0;
}
