#include "damage.h"
#include "drawing.h"
#include "handles.h"

namespace
{
bool s_painting = false;

/// Paints the visible pieces of a window: what is left of a rectangle after cutting out whatever lies in
/// front of it. Once a callback has changed the tree it stops, and touches no window any more.
class PiecePainter
{
public:
    explicit PiecePainter(const Window &window)
        : m_window(window)
        , m_client(window.clientRect())
    {
    }

    void paint(const Rect &area) { cut(area, m_window.next()); }

    bool hasPainted() const { return m_hasPainted; }
    /// What it could not paint any more.
    const Rect &left() const { return m_left; }
    bool isTreeChanged() const { return m_version != damage.treeVersion; }

private:
    /// `obstacle` is the lowest window that may lie in front and has not been cut out yet: the following ones
    /// are all in front, too. The recursion is as deep as there are windows, which are few.
    // NOLINTNEXTLINE(misc-no-recursion)
    void cut(const Rect &area, const Window *obstacle)
    {
        for (; obstacle != nullptr; obstacle = obstacle->following()) {
            const Rect hole = holeOf(*obstacle, area);
            if (obstacle->isShown() && !isEmpty(hole)) {
                cutAround(area, hole, obstacle->following());
                return;
            }
        }
        paintPiece(area);
    }

    // NOLINTNEXTLINE(misc-no-recursion)
    void cutAround(const Rect &area, const Rect &hole, const Window *next)
    {
        for (const Rect &piece : Remainder(area, hole)) {
            if (isTreeChanged()) {
                m_left = united(m_left, piece);
            } else {
                cut(piece, next);
            }
        }
    }

    /// Children are cut off by the client area; for other obstacles `area` is within that of their parent.
    Rect holeOf(const Window &obstacle, const Rect &area) const
    {
        const Rect hole = intersection(obstacle.rect(), area);
        return obstacle.parent() == &m_window ? intersection(hole, m_client) : hole;
    }

    void paintPiece(const Rect &piece)
    {
        const PaintScope scope({m_window.rect().x0, m_window.rect().y0}, piece);
        m_hasPainted = true;
        WM_Message message;
        message.id = WM_PAINT;
        WM_SendMessage(m_window.handle(), message);
    }

    const Window &m_window;
    const Rect m_client;
    const unsigned m_version = damage.treeVersion;
    Rect m_left = NoRect;
    bool m_hasPainted = false;
};

/// The lowest window that is invalid and has not had its turn in this round.
Window *nextInvalid(Window *from, Rect &area)
{
    Window *window = from;
    while (window != nullptr) {
        if (window->turn != damage.round) {
            area = window->takeInvalid();
            if (!isEmpty(area)) {
                return window;
            }
        }
        window = window->next();
    }
    return nullptr;
}

/// In each round a window has one turn, so that callbacks that invalidate something whenever they paint do
/// not keep the round from ending. What they leave invalid waits for the next round.
bool paintRound()
{
    bool hasPainted = false;
    Rect area{};
    Window *window = nextInvalid(findWindow(WM_GetDesktopWindow()), area);
    while (window != nullptr) {
        const WM_Handle handle = window->handle();
        window->turn = damage.round;
        PiecePainter painter(*window);
        painter.paint(area);
        hasPainted = hasPainted || painter.hasPainted();
        if (painter.isTreeChanged()) {
            if (Window *const interrupted = findWindow(handle)) {
                interrupted->invalidate(painter.left());
            }
            window = findWindow(WM_GetDesktopWindow());
        }
        window = nextInvalid(window, area);
    }
    return hasPainted;
}
} // namespace

int WM_Exec()
{
    if (!damage.isRequested || s_painting) {
        return 0;
    }
    damage.isRequested = false;
    s_painting = true;
    ++damage.round;
    const bool hasPainted = paintRound();
    s_painting = false;
    return hasPainted ? 1 : 0;
}
