#include "busyscope.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBasicTimer>
#include <QEvent>
#include <QTimerEvent>

namespace
{
/// Turns of the event loop without input after which none waits any more. One turn reads it, the same or the
/// next one brings it to the windows, and a timer may be ahead of both in its turn.
constexpr int QuietTurns = 3;

bool isTouch(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick ||
           type == QEvent::MouseMove || type == QEvent::MouseButtonRelease;
}

/// Drops the touches that have waited, each from its press to its release, and goes away when there are no
/// more. Touch panels are no exception: no page takes touch events, so Qt turns them into those of a mouse.
class WaitingTouches : public QObject
{
public:
    WaitingTouches()
        : QObject(qApp)
    {
        qApp->installEventFilter(this);
        m_turn.start(0, this);
    }

protected:
    /// All input comes in at a window. Events for widgets are not looked at: they follow from one that was
    /// let through.
    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        if (!receiver->isWindowType() || !isTouch(event->type())) {
            return false;
        }
        const bool waiting = m_turn.isActive();
        if (waiting) {
            m_turnsLeft = QuietTurns;
        }
        if (event->type() == QEvent::MouseButtonPress) {
            m_dropping = waiting;
        }
        const bool dropped = m_dropping;
        if (event->type() == QEvent::MouseButtonRelease) {
            m_dropping = false;
        }
        endIfDone();
        return dropped;
    }

    void timerEvent(QTimerEvent *) override
    {
        if (--m_turnsLeft == 0) {
            m_turn.stop();
            endIfDone();
        }
    }

private:
    void endIfDone()
    {
        if (!m_turn.isActive() && !m_dropping) {
            deleteLater();
        }
    }

    QBasicTimer m_turn;
    int m_turnsLeft = QuietTurns;
    bool m_dropping = false; ///< the touch that has begun last
};
} // namespace

BusyScope::BusyScope(QAbstractButton *button)
    : m_button(button)
    , m_wasEnabled(button->isEnabled())
{
    button->setEnabled(false);
    button->repaint();
}

BusyScope::~BusyScope()
{
    m_button->setEnabled(m_wasEnabled);
    new WaitingTouches;
}
