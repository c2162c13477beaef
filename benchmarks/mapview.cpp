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

struct Scale {
    int ports;
    int pitch;
    int dot;
    int penWidth;
};

Drawing drawingOf(const Scale &scale, int width, const quint16 *map)
{
    Drawing drawing{scale.penWidth, {}, {}};
    for (int row = 0; row < scale.ports; ++row) {
        const int top = row * scale.pitch + scale.dot / 2;
        drawing.dots.emplace_back(24, top, scale.dot, scale.dot);
        drawing.dots.emplace_back(width - 24 - scale.dot, top, scale.dot, scale.dot);
        const QPen pen(QMxWidget::lineColor(map[row]), scale.penWidth, Qt::SolidLine, Qt::RoundCap,
                       Qt::RoundJoin);
        drawing.lines.push_back({pen, QLine(28 + scale.dot, map[row] * scale.pitch + scale.dot,
                                            width - 28 - scale.dot, row * scale.pitch + scale.dot)});
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
void measureSize(const Scale &scale)
{
    TestUnit unit(scale.ports);
    unit.start(false);
    quint16 map[MxMaxPort];
    for (int output = 0; output < scale.ports; ++output) {
        map[output] = static_cast<quint16>((output * 7 + 3) % scale.ports);
    }
    QMxWidget view;
    view.resize(200, 485);
    view.setMap(map);
    const Drawing drawing = drawingOf(scale, view.width(), map);
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
    std::printf("    %3d ports, median             %8.1f us   %8.1f us   %7.2f   (at most 1.30)\n",
                scale.ports, product.median(), bare.median(), product.median() / bare.median());
}
} // namespace

void measureMapView()
{
    std::printf("\npainting the map view              product    bare painter    ratio\n");
    for (const Scale &scale :
         {Scale{8, 66, 12, 2}, Scale{20, 24, 8, 2}, Scale{80, 6, 4, 1}, Scale{160, 3, 2, 1}}) {
        measureSize(scale);
    }
}
