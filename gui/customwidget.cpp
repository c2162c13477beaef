#include "handles.h"
#include "windowmanager.h"

#include <utility>

namespace
{
/// A widget that is written outside of the library. Owns nothing: its state is freed at `WM_DELETE`.
class CustomWidget final : public Window
{
public:
    CustomWidget(WM_WidgetProc proc, void *state)
        : m_proc(proc)
        , m_state(state)
    {
    }

    void hear(WM_Message &message) override
    {
        void *const state = message.id == WM_DELETE ? std::exchange(m_state, nullptr) : m_state;
        m_proc(message, state);
    }

    void *state(WM_WidgetProc proc) const { return proc == m_proc ? m_state : nullptr; }

private:
    const WM_WidgetProc m_proc;
    void *m_state;
};
} // namespace

WM_Handle WM_CreateWidget(int x, int y, int width, int height, WM_Handle parent, int flags, int id,
                          WM_WidgetProc proc, void *state)
{
    if (proc == nullptr) {
        return 0;
    }
    return addWindow(std::make_unique<CustomWidget>(proc, state), {x, y, width, height}, parent, flags, id);
}

void *WM_GetWidgetState(WM_Handle widget, WM_WidgetProc proc)
{
    const CustomWidget *const found = find<CustomWidget>(widget);
    return found != nullptr ? found->state(proc) : nullptr;
}
