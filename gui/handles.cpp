#include "handles.h"

#include <vector>

namespace
{
constexpr int SlotBits = 12;
constexpr int SlotMask = (1 << SlotBits) - 1;
constexpr int LastGeneration = (1 << (31 - SlotBits)) - 1;

struct Slot {
    std::unique_ptr<Window> window;
    int generation = 1; ///< a slot whose generations are used up stays empty
};

/// Slot 0 is never used: handle 0 is none.
std::vector<Slot> s_slots(1);

int freeSlot()
{
    const int count = static_cast<int>(s_slots.size());
    for (int i = 1; i < count; ++i) {
        if (!s_slots[i].window && s_slots[i].generation <= LastGeneration) {
            return i;
        }
    }
    if (count > SlotMask) {
        return 0;
    }
    s_slots.emplace_back();
    return count;
}

Slot *slotOf(WM_Handle handle)
{
    const int index = handle & SlotMask;
    if (index >= static_cast<int>(s_slots.size()) || s_slots[index].generation != handle >> SlotBits) {
        return nullptr;
    }
    return &s_slots[index];
}
} // namespace

WM_Handle Handles::add(std::unique_ptr<Window> &window)
{
    const int index = freeSlot();
    if (index == 0) {
        return 0;
    }
    s_slots[index].window = std::move(window);
    return s_slots[index].generation << SlotBits | index;
}

void Handles::release(WM_Handle handle)
{
    Slot *const slot = slotOf(handle);
    if (slot != nullptr && slot->window) {
        slot->window.reset();
        ++slot->generation;
    }
}

Window *findWindow(WM_Handle handle)
{
    const Slot *const slot = slotOf(handle);
    return slot != nullptr ? slot->window.get() : nullptr;
}

Window *findMovable(WM_Handle handle)
{
    Window *const window = findWindow(handle);
    return window != nullptr && window->parent() != nullptr ? window : nullptr;
}
