#include "messages.h"

#include "window.h"

namespace
{
WM_Handle s_focus = 0;

void sendFocus(WM_Handle window, bool gained)
{
    if (Window *const told = findWindow(window)) {
        told->focusChanged(gained);
        send(window, gained ? WM_SET_FOCUS : WM_KILL_FOCUS);
    }
}
} // namespace

void send(WM_Handle window, WM_MessageId id)
{
    WM_Message message;
    message.id = id;
    WM_SendMessage(window, message);
}

void WM_SetCallback(WM_Handle window, WM_Callback callback)
{
    if (Window *const hearing = findWindow(window)) {
        hearing->callback = callback;
    }
}

void WM_SendMessage(WM_Handle window, WM_Message message)
{
    const Window *const addressee = findWindow(window);
    if (addressee == nullptr) {
        return;
    }
    message.window = window;
    if (addressee->callback != nullptr) {
        addressee->callback(message);
    } else {
        WM_DefaultProc(message);
    }
}

void WM_DefaultProc(WM_Message &message)
{
    Window *const window = findWindow(message.window);
    if (window == nullptr) {
        return;
    }
    if (message.id == WM_PAINT) {
        window->paint();
    } else if (message.id == WM_KEY) {
        window->key(message.key, message.pressed != 0);
    }
}

void WM_NotifyParent(WM_Handle window, WM_Notification what)
{
    WM_Message message;
    message.id = WM_NOTIFY_PARENT;
    message.source = window;
    message.value = what;
    WM_SendMessage(WM_GetParent(window), message);
}

void WM_SetFocus(WM_Handle window)
{
    const WM_Handle before = WM_GetFocus();
    if (window == before || (window != 0 && findWindow(window) == nullptr)) {
        return;
    }
    s_focus = window;
    sendFocus(before, false);
    if (s_focus == window) {
        sendFocus(window, true);
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
