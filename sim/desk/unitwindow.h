#pragma once

#include "boardrouting.h"

#include <QPixmap>
#include <QRect>
#include <QSize>
#include <QWidget>

namespace sim
{
class BoardView;

/// Where a unit's window has what every unit has, in pixels.
struct UnitLayout {
    QSize window;
    QRect plate; ///< the front plate
    int titleLeft;
    QRect board; ///< its crosspoints
};

/// The unit as a person sees it from the front, and the crosspoints of its board. What is in the front plate
/// depends on the unit.
class UnitWindow : public QWidget
{
    Q_OBJECT

public:
    /// The board has switched.
    void showRouting(const BoardRouting &routing);

signals:
    /// The person has closed the window.
    void closed();

protected:
    /// `ports` is 2..160.
    UnitWindow(const UnitLayout &layout, int ports);

    /// All that never changes and is no widget, for constructors to paint on.
    QPixmap *face() { return &m_face; }

    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void drawFace(const UnitLayout &layout, int ports);

    QPixmap m_face;
    BoardView *const m_board;
};
} // namespace sim
