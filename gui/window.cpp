#include "window.h"

Window *Window::followingAncestors() const
{
    const Window *window = this;
    while (window != nullptr && window->m_above == nullptr) {
        window = window->m_parent;
    }
    return window != nullptr ? window->m_above : nullptr;
}

bool Window::holdsUpwards(bool Window::*state) const
{
    const Window *window = this;
    while (window != nullptr && window->*state) {
        window = window->m_parent;
    }
    return window == nullptr;
}

const Window *Window::root() const
{
    const Window *window = this;
    while (window->m_parent != nullptr) {
        window = window->m_parent;
    }
    return window;
}

Rect Window::exposed() const
{
    Rect area = m_rect;
    for (const Window *window = this; window != nullptr; window = window->m_parent) {
        if (!window->m_shown) {
            return NoRect;
        }
        if (window->m_parent != nullptr) {
            area = intersection(area, window->m_parent->clientRect());
        }
    }
    return area;
}

void Window::hear(WM_Message &message)
{
    if (message.id == WM_PAINT) {
        paint();
    } else if (message.id == WM_KEY) {
        key(message.key, message.pressed != 0);
    }
}

void Window::attach(Window *parent, const Rect &rect, int flags, WM_Handle handle)
{
    m_rect = rect;
    m_shown = (flags & WM_VISIBLE) != 0;
    takesKeys = (flags & WM_TAKES_KEYS) != 0;
    m_handle = handle;
    ++damage.treeVersion;
    if (parent != nullptr) {
        link(parent, parent->m_topChild);
        invalidateTree(m_rect);
    }
}

void Window::detach()
{
    setShown(false);
    unlink();
    m_parent = nullptr;
}

void Window::setShown(bool shown)
{
    if (shown == m_shown) {
        return;
    }
    ++damage.treeVersion;
    const Rect before = exposed();
    m_shown = shown;
    if (shown) {
        invalidateTree(m_rect);
    } else {
        uncover(before);
    }
}

void Window::setRect(const Rect &rect)
{
    if (rect == m_rect) {
        return;
    }
    ++damage.treeVersion;
    const Rect before = exposed();
    const Rect clientBefore = clientRect();
    const bool moves = rect.x0 != m_rect.x0 || rect.y0 != m_rect.y0;
    moveDescendants(rect.x0 - m_rect.x0, rect.y0 - m_rect.y0);
    m_rect = rect;
    for (const Rect &left : Remainder(before, rect)) {
        uncover(left);
    }
    if (moves) {
        invalidateTree(rect);
        return;
    }
    invalidate(rect);
    for (const Rect &gained : Remainder(clientRect(), clientBefore)) {
        for (Window *child = m_lowestChild; child != nullptr; child = child->m_above) {
            child->invalidateTree(gained);
        }
    }
}

void Window::raise()
{
    if (m_above == nullptr) {
        return;
    }
    for (const Window *sibling = m_above; sibling != nullptr; sibling = sibling->m_above) {
        if (sibling->m_shown) {
            invalidateTree(sibling->m_rect);
        }
    }
    unlink();
    link(m_parent, m_parent->m_topChild);
}

void Window::lower()
{
    if (m_below == nullptr) {
        return;
    }
    const Rect area = exposed();
    for (Window *sibling = m_below; sibling != nullptr; sibling = sibling->m_below) {
        sibling->invalidateTree(area);
    }
    unlink();
    link(m_parent, nullptr);
}

void Window::invalidate(const Rect &area)
{
    const Rect part = intersection(area, exposed());
    if (!isEmpty(part)) {
        m_invalid = united(m_invalid, part);
        damage.isRequested = true;
    }
}

void Window::invalidateTree(const Rect &area)
{
    invalidate(area);
    const Window *const end = following();
    for (Window *window = m_lowestChild; window != nullptr && window != end; window = window->next()) {
        window->invalidate(area);
    }
}

Rect Window::takeInvalid()
{
    if (isEmpty(m_invalid)) {
        return NoRect;
    }
    const Rect invalid = intersection(m_invalid, exposed());
    m_invalid = NoRect;
    return invalid;
}

void Window::clientRectChanged(const Rect &before)
{
    ++damage.treeVersion;
    const Rect after = clientRect();
    moveDescendants(after.x0 - before.x0, after.y0 - before.y0);
    invalidateTree(m_rect);
}

/// The window no longer covers `area`, which it did so far.
void Window::uncover(const Rect &area)
{
    m_parent->invalidate(area);
    for (Window *sibling = m_below; sibling != nullptr; sibling = sibling->m_below) {
        sibling->invalidateTree(area);
    }
}

void Window::moveDescendants(int dx, int dy)
{
    const Window *const end = following();
    for (Window *window = m_lowestChild; window != nullptr && window != end; window = window->next()) {
        window->m_rect = moved(window->m_rect, dx, dy);
    }
}

/// Among the children of `parent`, right above `below`, or lowest if that is null.
void Window::link(Window *parent, Window *below)
{
    m_parent = parent;
    m_below = below;
    m_above = below != nullptr ? below->m_above : parent->m_lowestChild;
    (m_below != nullptr ? m_below->m_above : parent->m_lowestChild) = this;
    (m_above != nullptr ? m_above->m_below : parent->m_topChild) = this;
}

void Window::unlink()
{
    ++damage.treeVersion;
    (m_below != nullptr ? m_below->m_above : m_parent->m_lowestChild) = m_above;
    (m_above != nullptr ? m_above->m_below : m_parent->m_topChild) = m_below;
    m_below = nullptr;
    m_above = nullptr;
}
