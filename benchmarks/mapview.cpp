#include "mapgeometry.h"
#include "qmxwidget.h"
#include "samples.h"
#include "screens.h"
#include "testunit.h"

#include <QPainter>
#include <cstdio>

namespace
{
constexpr int Rounds = 2000;

/// What a map view shows, worked out beforehand.
struct Drawing {
    struct Line {
        QPen pen;
        QLine line;
    };
    int penWidth;
    std::vector<QRect> dots;
    std::vector<Line> lines;
};

Drawing drawingOf(int ports, QSize view, const quint16 *map)
{
    const MapGeometry geometry(ports, view);
    Drawing drawing{geometry.penWidth(), {}, {}};
    for (int row = 0; row < ports; ++row) {
        drawing.dots.push_back(geometry.inputDot(row));
        drawing.dots.push_back(geometry.outputDot(row));
        const QPen pen(QMxWidget::lineColor(map[row]), geometry.penWidth(), Qt::SolidLine, Qt::RoundCap,
                       Qt::RoundJoin);
        drawing.lines.push_back({pen, geometry.line(map[row], row)});
    }
    return drawing;
}

void paint(QPainter &painter, const Drawing &drawing)
{
    painter.setPen(QPen(Qt::gray, drawing.penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const QRect &dot : drawing.dots) {
        painter.drawEllipse(dot);
    }
    for (const Drawing::Line &line : drawing.lines) {
        painter.setPen(line.pen);
        painter.drawLine(line.line);
    }
}

/// One paint event each, alternately, into the same picture.
void measureSize(int ports)
{
    TestUnit unit(ports);
    unit.start(false);
    quint16 map[MxMaxPort];
    for (int output = 0; output < ports; ++output) {
        map[output] = static_cast<quint16>((output * 7 + 3) % ports);
    }
    QMxWidget view;
    view.resize(200, 485);
    view.setMap(map);
    const Drawing drawing = drawingOf(ports, view.size(), map);
    QImage picture(view.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    Samples product;
    Samples bare;
    for (int round = 0; round < Rounds; ++round) {
        double start = nowMicroseconds();
        view.render(&picture, QPoint(), QRegion(), QWidget::RenderFlags());
        product.add(nowMicroseconds() - start);
        start = nowMicroseconds();
        QPainter painter(&picture);
        paint(painter, drawing);
        painter.end();
        bare.add(nowMicroseconds() - start);
    }
    std::printf("    %3d ports, median             %8.1f us   %8.1f us   %7.2f   (at most 1.30)\n", ports,
                product.median(), bare.median(), product.median() / bare.median());
}
} // namespace

void measureMapView()
{
    std::printf("\npainting the map view              product    bare painter    ratio\n");
    for (const int ports : {8, 20, 80, 160}) {
        measureSize(ports);
    }
}
