#include "busyscope.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBasicTimer>
#include <QEvent>
#include <QTimerEvent>

namespace
{
/// Turns of the event loop without a touch after which none waits any more. One turn reads the input, the
/// same or the next one brings it to the windows, and a timer may be ahead of both in its turn.
constexpr int QuietTurns = 3;

bool isTouch(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick ||
           type == QEvent::MouseMove || type == QEvent::MouseButtonRelease;
}

/// Drops the touches that have waited, each from its press to its release, and goes away when there are no
/// more. Touch panels are no exception: no page takes touch events, so that Qt makes a mouse's of them.
class WaitingTouches : public QObject
{
public:
    WaitingTouches()
        : QObject(qApp)
    {
        qApp->installEventFilter(this);
        expectMore();
    }

protected:
    /// All input comes in at a window. Events for widgets are not looked at: they follow from one that was
    /// let through.
    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        if (!receiver->isWindowType() || !isTouch(event->type())) {
            return false;
        }
        if (event->type() == QEvent::MouseButtonPress) {
            m_dropping = m_turn.isActive();
            if (!m_dropping) {
                deleteLater();
            }
        }
        const bool dropped = m_dropping;
        if (event->type() == QEvent::MouseButtonRelease) {
            m_dropping = false;
        }
        if (dropped) {
            expectMore();
        }
        return dropped;
    }

    void timerEvent(QTimerEvent *) override
    {
        if (--m_turnsLeft > 0) {
            return;
        }
        m_turn.stop();
        if (!m_dropping) {
            deleteLater();
        }
    }

private:
    void expectMore()
    {
        m_turnsLeft = QuietTurns;
        m_turn.start(0, this);
    }

    QBasicTimer m_turn;
    int m_turnsLeft = 0;
    bool m_dropping = false; ///< the touch that was begun last
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
