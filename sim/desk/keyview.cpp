#include "keyview.h"

#include "faceplate.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

namespace sim
{
namespace
{
constexpr int Margin = 6; ///< around the cap, where its light falls on the plate
constexpr int Travel = 2;

QColor mixed(const QColor &a, const QColor &b, qreal part)
{
    const auto mix = [part](int from, int to) { return from + static_cast<int>((to - from) * part); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}
} // namespace

KeyView::KeyView(int code, const QString &legend, const QColor &light, QWidget *parent)
    : QWidget(parent)
    , m_code(code)
    , m_legend(legend)
    , m_light(light)
{
}

void KeyView::setLit(bool isLit)
{
    if (isLit != m_isLit) {
        m_isLit = isLit;
        update();
    }
}

void KeyView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        setDown(true);
        emit pressed(m_code);
    }
}

void KeyView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_isDown) {
        setDown(false);
        emit released(m_code);
    }
}

void KeyView::setDown(bool isDown)
{
    m_isDown = isDown;
    update();
}

void KeyView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF well = QRectF(rect()).adjusted(Margin, Margin, -Margin, -Margin);
    if (m_isLit) {
        QColor halo = m_light;
        for (int ring = Margin; ring > 0; --ring) {
            halo.setAlpha(10 + (Margin - ring) * 8);
            painter.setPen(QPen(halo, 1.5));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(well.adjusted(-ring, -ring, ring, ring), 4 + ring, 4 + ring);
        }
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(8, 8, 9));
    painter.drawRoundedRect(well.adjusted(-1.5, -1.5, 1.5, 2.5), 5, 5);

    const QRectF cap = m_isDown ? well.adjusted(1, 1 + Travel, -1, 1) : well.adjusted(0, 0, 0, -1);
    const QColor plain(m_isDown ? 58 : 74, m_isDown ? 60 : 76, m_isDown ? 63 : 80);
    QLinearGradient face(cap.topLeft(), cap.bottomLeft());
    face.setColorAt(0, m_isLit ? mixed(m_light, Qt::white, 0.45) : plain.lighter(118));
    face.setColorAt(0.12, m_isLit ? mixed(m_light, Qt::white, 0.2) : plain);
    face.setColorAt(1, m_isLit ? mixed(m_light, Qt::black, m_isDown ? 0.3 : 0.16) : plain.darker(135));
    painter.setBrush(face);
    painter.setPen(QPen(QColor(0, 0, 0, 140), 1));
    painter.drawRoundedRect(cap, 4, 4);

    painter.setFont(letteringFont(cap.height() > 40 ? 17 : 14));
    painter.setPen(m_isLit ? QColor(24, 22, 18) : QColor(222, 224, 227));
    painter.drawText(cap, Qt::AlignCenter, m_legend);
}
} // namespace sim
