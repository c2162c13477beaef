#include "lcdview.h"

#include "faceplate.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

namespace sim
{
LcdView::LcdView(QWidget *parent)
    : QWidget(parent)
    , m_dots(LcdModule::Width, LcdModule::Height, QImage::Format_Mono)
{
    setFixedSize(Extent);
    m_dots.fill(0);
}

void LcdView::showPicture(const LcdModule &lcd, bool light)
{
    QImage dots(m_dots.size(), m_dots.format());
    for (int y = 0; y < dots.height(); ++y) {
        for (int x = 0; x < dots.width(); ++x) {
            dots.setPixel(x, y, lcd.isLit(x, y));
        }
    }
    if (light != m_light || dots != m_dots) {
        m_light = light;
        m_dots = dots;
        update();
    }
}

void LcdView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintRecess(&painter, rect().adjusted(3, 3, -3, -3), QColor(14, 15, 16));

    const QRect glass = rect().adjusted(16, 16, -16, -16);
    QRadialGradient ground(glass.center(), glass.width() * 0.62);
    ground.setColorAt(0, m_light ? QColor(196, 220, 62) : QColor(92, 102, 66));
    ground.setColorAt(1, m_light ? QColor(160, 190, 38) : QColor(70, 79, 50));
    painter.fillRect(glass, ground);

    // Even a dot that is off takes a little light away, and the gaps between those that are on are narrower
    // than a pixel.
    const QColor on = m_light ? QColor(26, 36, 10) : QColor(34, 40, 22);
    const QColor onGap = m_light ? QColor(26, 36, 10, 175) : QColor(34, 40, 22, 175);
    const QColor off(0, 0, 0, m_light ? 10 : 8);
    for (int y = 0; y < m_dots.height(); ++y) {
        for (int x = 0; x < m_dots.width(); ++x) {
            const QRect dot(Border + x * DotSize, Border + y * DotSize, DotSize - 1, DotSize - 1);
            const bool isOn = m_dots.pixelIndex(x, y) != 0;
            if (isOn) {
                painter.fillRect(dot.adjusted(0, 0, 1, 1), onGap);
            }
            painter.fillRect(dot, isOn ? on : off);
        }
    }

    painter.setPen(QColor(0, 0, 0, 150));
    painter.drawRect(glass.adjusted(0, 0, -1, -1));
    painter.setPen(QColor(0, 0, 0, 60));
    painter.drawRect(glass.adjusted(1, 1, -2, -2));
    QLinearGradient gloss(glass.topLeft(), glass.topLeft() + QPoint(glass.width() / 2, glass.height()));
    gloss.setColorAt(0, QColor(255, 255, 255, 34));
    gloss.setColorAt(0.5, QColor(255, 255, 255, 6));
    gloss.setColorAt(0.51, QColor(255, 255, 255, 0));
    painter.fillRect(glass, gloss);
}
} // namespace sim
