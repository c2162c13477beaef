#pragma once

#include <QWidget>

#include <cstdint>
#include <vector>

/// Per output the input that it shows, 0-based; 0xFFFF is dark.
using Routing = std::vector<uint16_t>;

/// The crosspoints of the switching board: an input per column, an output per row. Where the pointer is, it
/// says what the output shows.
class BoardView : public QWidget
{
    Q_OBJECT

public:
    /// `ports` is 2..160.
    BoardView(int ports, QWidget *parent);

    void show(const Routing &routing);

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
    Routing m_routing;
    int m_pointed = -1; ///< the output that the pointer is at; -1 is none
};
