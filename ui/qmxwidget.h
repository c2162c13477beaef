#pragma once

#include "mxshm.h"

#include <QPixmap>
#include <QWidget>

/// A routing map as a wiring diagram: a line from each output to the input that it shows, in the input's
/// colour. GUI thread only.
class QMxWidget : public QWidget
{
    Q_OBJECT

public:
    explicit QMxWidget(QWidget *parent = nullptr);

    /// Shows this map, one 0-based input per output, `port` entries; any input that the matrix does not have
    /// stands for none. \return whether the map differs from the one shown so far, which it then repaints
    bool setMap(const unsigned short *map);

    /// The colour of the lines that come from this 0-based input.
    static QColor lineColor(quint16 input);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void drawGround();

    quint16 m_map[MxMaxPort];
    /// Numbers and dots, which only change with the size of the view or of the matrix.
    QPixmap m_ground;
    int m_groundPorts = 0;
};
