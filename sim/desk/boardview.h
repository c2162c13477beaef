#pragma once

#include "boardrouting.h"

#include <QWidget>

namespace sim
{
/// The crosspoints of the switching board: an input per column, an output per row. It says what the
/// output at the pointer shows.
class BoardView : public QWidget
{
    Q_OBJECT

public:
    /// `ports` is 2..160.
    BoardView(int ports, QWidget *parent);

    /// What is to be seen from now on.
    void showRouting(const BoardRouting &routing);

protected:
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRectF field() const;
    QPointF crosspoint(int input, int output) const;
    void setPointed(int output);
    void paintGrid(QPainter *painter) const;
    void paintNumbers(QPainter *painter) const;
    void paintRoutes(QPainter *painter) const;
    QString headline() const;

    const int m_ports;
    BoardRouting m_routing;
    int m_pointed = -1; ///< the output that the pointer is at; -1 is none
};
} // namespace sim
