#include "boardview.h"

#include "faceplate.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstddef>

namespace sim
{
namespace
{
const QColor Trace(58, 74, 68);
const QColor InputLight(255, 176, 72);
const QColor OutputLight(104, 240, 150);
const QColor CrossLight(255, 236, 190);

constexpr qreal FinePitch = 5; ///< below it only every tenth trace is drawn

/// Every how many numbers there is room to write one, which takes `extent` pixels.
int numberStep(qreal pitch, qreal extent)
{
    for (const int step : {1, 5, 10, 20}) {
        if (step * pitch >= extent) {
            return step;
        }
    }
    return 50;
}

QColor faded(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}
} // namespace

BoardView::BoardView(int ports, QWidget *parent)
    : QWidget(parent)
    , m_ports(ports)
    , m_routing(static_cast<std::size_t>(ports), 0xFFFF)
{
    setMouseTracking(true);
}

void BoardView::showRouting(const BoardRouting &routing)
{
    m_routing = routing;
    update();
}

void BoardView::mouseMoveEvent(QMouseEvent *event)
{
    const int output =
        static_cast<int>(std::floor((event->pos().y() - field().top()) * m_ports / field().height()));
    setPointed(output >= 0 && output < m_ports ? output : -1);
}

void BoardView::leaveEvent(QEvent *)
{
    setPointed(-1);
}

void BoardView::setPointed(int output)
{
    if (output != m_pointed) {
        m_pointed = output;
        update();
    }
}

QRectF BoardView::field() const
{
    return QRectF(rect()).adjusted(40, 62, -14, -14);
}

QPointF BoardView::crosspoint(int input, int output) const
{
    const QRectF all = field();
    return {all.left() + (input + 0.5) * all.width() / m_ports,
            all.top() + (output + 0.5) * all.height() / m_ports};
}

void BoardView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintRecess(&painter, rect().adjusted(3, 3, -3, -3), QColor(13, 19, 18));
    paintLettering(&painter, QRect(14, 8, width() - 28, 24), Qt::AlignLeft | Qt::AlignVCenter, headline(),
                   11);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGrid(&painter);
    paintNumbers(&painter);
    paintRoutes(&painter);
}

QString BoardView::headline() const
{
    if (m_pointed < 0) {
        return "SWITCHING BOARD";
    }
    const int input = m_routing[static_cast<std::size_t>(m_pointed)] + 1;
    return QString("OUTPUT %1: ").arg(m_pointed + 1) +
           (input > m_ports ? "DARK" : QString("INPUT %1").arg(input));
}

void BoardView::paintGrid(QPainter *painter) const
{
    const QRectF all = field();
    const auto isDrawn = [this](int index, qreal extent) {
        return extent / m_ports >= FinePitch || index == 0 || (index + 1) % 10 == 0;
    };
    painter->setPen(QPen(Trace, 1));
    for (int i = 0; i < m_ports; ++i) {
        const QPointF at = crosspoint(i, i);
        if (isDrawn(i, all.width())) {
            painter->drawLine(QPointF(at.x(), all.top() - 4), QPointF(at.x(), all.bottom()));
        }
        if (isDrawn(i, all.height())) {
            painter->drawLine(QPointF(all.left() - 4, at.y()), QPointF(all.right(), at.y()));
        }
    }
}

void BoardView::paintNumbers(QPainter *painter) const
{
    const QRectF all = field();
    const int across = numberStep(all.width() / m_ports, m_ports < 100 ? 17 : 24);
    const int down = numberStep(all.height() / m_ports, 13);
    painter->setFont(letteringFont(10));
    const auto isShown = [](int index, int step) { return index == 0 || (index + 1) % step == 0; };
    for (int i = 0; i < m_ports; ++i) {
        const QPointF at = crosspoint(i, i);
        const QString number = QString::number(i + 1);
        painter->setPen(InputLight);
        if (isShown(i, across)) {
            painter->drawText(QRectF(at.x() - 20, all.top() - 22, 40, 16), Qt::AlignCenter, number);
        }
        painter->setPen(OutputLight);
        if (isShown(i, down)) {
            painter->drawText(QRectF(all.left() - 38, at.y() - 8, 30, 16), Qt::AlignRight | Qt::AlignVCenter,
                              number);
        }
    }
}

void BoardView::paintRoutes(QPainter *painter) const
{
    const QRectF all = field();
    const qreal pitch = std::min(all.width(), all.height()) / m_ports;
    const qreal radius = std::max(1.8, std::min(pitch * 0.42, 6.0));
    std::vector<QPointF> lit;
    for (int output = 0; output < m_ports; ++output) {
        const int input = m_routing[static_cast<std::size_t>(output)];
        const bool isPointed = output == m_pointed;
        if (isPointed) {
            const qreal y = crosspoint(0, output).y();
            painter->setPen(QPen(faded(OutputLight, 120), 1));
            painter->drawLine(QPointF(all.left() - 4, y), QPointF(all.right(), y));
        }
        if (input >= m_ports) {
            continue;
        }
        const QPointF at = crosspoint(input, output);
        lit.push_back(at);
        if (pitch >= FinePitch || isPointed) {
            painter->setPen(QPen(faded(InputLight, 90), 1.4));
            painter->drawLine(QPointF(at.x(), all.top() - 4), at);
            painter->setPen(QPen(faded(OutputLight, 120), 1.4));
            painter->drawLine(QPointF(all.left() - 4, at.y()), at);
        }
    }
    for (const QPointF &at : lit) {
        paintGlow(painter, at, radius * 2.6, faded(InputLight, 150));
    }
    painter->setBrush(CrossLight);
    for (const QPointF &at : lit) {
        painter->drawEllipse(at, radius, radius);
    }
}
} // namespace sim
