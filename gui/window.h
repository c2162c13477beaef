#pragma once

#include "damage.h"
#include "geometry.h"

/// A node of the window tree. What a kind of window adds are its hooks; messages, order, geometry and
/// invalidation are here. All rectangles are on the display unless said otherwise.
///
/// A callback may delete any window, so nobody touches a window after it has sent a message: whoever goes on
/// does so by handle.
class Window
{
public:
    Window() = default;
    virtual ~Window() = default;
    Window(const Window &) = delete;
    Window &operator=(const Window &) = delete;

    /// Where children lie; its upper left corner is the origin of their places.
    virtual Rect clientRect() const { return m_rect; }
    /// Draws all of it, with drawing operations relative to the window.
    virtual void paint() {}
    virtual void key(int /*key*/, bool /*pressed*/) {}
    /// What it does itself upon a message: calls the two above.
    virtual void hear(WM_Message &message);
    /// Called after the focus has come or gone. Sends no messages.
    virtual void focusChanged(bool /*gained*/) {}

    WM_Handle handle() const { return m_handle; }
    const Rect &rect() const { return m_rect; }
    bool isShown() const { return m_shown; }
    /// Shown or enabled together with all that it lies in.
    bool isVisible() const { return holdsUpwards(&Window::m_shown); }
    bool isEnabled() const { return holdsUpwards(&Window::m_enabled); }
    Window *parent() const { return m_parent; }
    Window *firstChild() const { return m_lowestChild; }
    /// The next one from back to front; `following` skips those in this window.
    Window *next() const { return m_lowestChild != nullptr ? m_lowestChild : following(); }
    Window *following() const { return m_above != nullptr ? m_above : followingAncestors(); }
    const Window *root() const;
    /// What ancestors and display leave of it; empty when it or one of them is hidden.
    Rect exposed() const;

    /// Puts it on top of the children of `parent`, or makes it the desktop if that is null. `flags` as in
    /// `WM_Flags`.
    void attach(Window *parent, const Rect &rect, int flags, WM_Handle handle);
    /// Takes it out of the tree; it is hidden then.
    void detach();
    void setShown(bool shown);
    void setEnabled(bool enabled) { m_enabled = enabled; }
    void setRect(const Rect &rect);
    void raise();
    void lower();

    /// Has what is exposed of `area` painted, not counting children.
    void invalidate(const Rect &area);
    /// The same with `area` relative to the window.
    void invalidateLocal(const Rect &area) { invalidate(moved(area, m_rect.x0, m_rect.y0)); }
    void invalidateTree(const Rect &area);
    /// What is to be painted; from now on nothing.
    Rect takeInvalid();

    WM_Callback callback = nullptr;
    void *userData = nullptr;
    int id = 0;
    bool takesKeys = false;
    unsigned turn = damage.round; ///< number of the last round of painting in which it had its turn

protected:
    /// Children follow the client area, which was at `before`; all is painted anew.
    void clientRectChanged(const Rect &before);

private:
    Window *followingAncestors() const;
    bool holdsUpwards(bool Window::*state) const;
    void uncover(const Rect &area);
    void moveDescendants(int dx, int dy);
    void link(Window *parent, Window *below);
    void unlink();

    WM_Handle m_handle = 0;
    bool m_shown = false;
    bool m_enabled = true;
    Rect m_rect = NoRect;
    Rect m_invalid = NoRect;
    Window *m_parent = nullptr;
    Window *m_lowestChild = nullptr;
    Window *m_topChild = nullptr;
    Window *m_below = nullptr; ///< among its siblings
    Window *m_above = nullptr;
};
