#include "qmxwidget.h"

#include "mapgeometry.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr QRgb Palette[] = {0xFFFF0000, 0xFFFF7F00, 0xFF7FFF00, 0xFF00FF00, 0xFF007FFF,
                            0xFF0000FF, 0xFF7F00FF, 0xFFFF00FF, 0xFF00FFFF, 0xFFFF007F};
constexpr int PaletteSize = sizeof Palette / sizeof *Palette;

QPen penOf(const QColor &color, const MapGeometry &geometry)
{
    return {color, qreal(geometry.penWidth()), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}
} // namespace

QMxWidget::QMxWidget(QWidget *parent)
    : QWidget(parent)
{
    std::fill_n(m_map, MxMaxPort, MxNoInput);
}

bool QMxWidget::setMap(const unsigned short *map)
{
    const int ports = portCount(*g_mxConfig);
    if (std::equal(map, map + ports, m_map)) {
        return false;
    }
    std::copy_n(map, ports, m_map);
    update();
    return true;
}

QColor QMxWidget::lineColor(quint16 input)
{
    return QColor(Palette[input % PaletteSize]);
}

void QMxWidget::paintEvent(QPaintEvent *)
{
    const int ports = portCount(*g_mxConfig);
    if (m_ground.size() != size() || m_groundPorts != ports) {
        m_groundPorts = ports;
        drawGround();
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_ground);
    const MapGeometry geometry(ports, size());
    QPen pen = penOf(Qt::gray, geometry);
    for (int output = 0; output < ports; ++output) {
        const quint16 input = m_map[output];
        if (input < ports) {
            pen.setColor(lineColor(input));
            painter.setPen(pen);
            painter.drawLine(geometry.line(input, output));
        }
    }
}

void QMxWidget::drawGround()
{
    const MapGeometry geometry(m_groundPorts, size());
    m_ground = QPixmap(size());
    m_ground.fill(Qt::transparent);
    QPainter painter(&m_ground);
    painter.setFont(QFont(QStringLiteral("Ubuntu"), geometry.fontSize(), QFont::Light));
    painter.setPen(penOf(Qt::gray, geometry));
    for (int row = 0; row < m_groundPorts; ++row) {
        const QString number = QString::number(row + 1);
        painter.drawText(geometry.inputLabel(row), Qt::AlignCenter, number);
        painter.drawText(geometry.outputLabel(row), Qt::AlignCenter, number);
        painter.drawEllipse(geometry.inputDot(row));
        painter.drawEllipse(geometry.outputDot(row));
    }
}
