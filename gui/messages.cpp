#include "messages.h"

#include "handles.h"

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
    if (Window *const window = findWindow(message.window)) {
        window->hear(message);
    }
}

void WM_NotifyParent(WM_Handle window, WM_Notification what)
{
    if (const Window *const child = findMovable(window)) {
        WM_Message message;
        message.id = WM_NOTIFY_PARENT;
        message.source = window;
        message.value = what;
        WM_SendMessage(child->parent()->handle(), message);
    }
}
