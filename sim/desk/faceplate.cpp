#include "faceplate.h"

#include <QImage>
#include <QLinearGradient>
#include <QRadialGradient>

namespace sim
{
namespace
{
const QColor Lettering(205, 208, 212);
constexpr int EarWidth = 40; ///< of the plate beyond the housing, where the rack holds it

/// Streaks of a brush that went from side to side.
void paintBrushing(QPainter *painter, const QRect &rect)
{
    QImage image(rect.size(), QImage::Format_ARGB32_Premultiplied);
    quint32 random = 1;
    int level = 0;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (x == 0 || random >> 26 == 0) {
                level = static_cast<int>((random >> 16) % 15) - 7;
            }
            random = random * 1664525 + 1013904223;
            const int alpha = qAbs(level);
            const int light = level > 0 ? alpha : 0;
            line[x] = qRgba(light, light, light, alpha);
        }
    }
    painter->drawImage(rect.topLeft(), image);
}

/// A screw through a slot of the plate, its cross turned by `angle` degrees.
void paintScrew(QPainter *painter, const QPointF &centre, qreal angle)
{
    painter->save();
    painter->translate(centre);
    painter->setPen(QPen(QColor(255, 255, 255, 40), 1));
    painter->setBrush(QColor(9, 9, 10));
    painter->drawRoundedRect(QRectF(-16, -9, 32, 18), 9, 9);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor(0, 0, 0, 120));
    painter->drawEllipse(QPointF(0, 1.5), 12.5, 12.5);
    QLinearGradient head(-6, -12, 6, 12);
    head.setColorAt(0, QColor(176, 180, 184));
    head.setColorAt(0.5, QColor(122, 126, 130));
    head.setColorAt(1, QColor(74, 77, 80));
    painter->setBrush(head);
    painter->drawEllipse(QPointF(0, 0), 12, 12);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(QColor(255, 255, 255, 60), 1));
    painter->drawEllipse(QPointF(0, 0), 10, 10);
    painter->rotate(angle);
    for (const int turn : {0, 90}) {
        Q_UNUSED(turn)
        painter->fillRect(QRectF(-6.5, -1.4, 13, 2.8), QColor(32, 34, 36));
        painter->rotate(90);
    }
    painter->restore();
}
} // namespace

void paintBench(QPainter *painter, const QRect &rect)
{
    QLinearGradient bench(rect.topLeft(), rect.bottomLeft());
    bench.setColorAt(0, QColor(58, 54, 50));
    bench.setColorAt(1, QColor(40, 37, 35));
    painter->fillRect(rect, bench);
}

void paintPlate(QPainter *painter, const QRect &rect)
{
    const QRect shadow(rect.left(), rect.bottom() + 1, rect.width(), 18);
    QLinearGradient fade(shadow.topLeft(), shadow.bottomLeft());
    fade.setColorAt(0, QColor(0, 0, 0, 190));
    fade.setColorAt(1, QColor(0, 0, 0, 0));
    painter->fillRect(shadow, fade);

    QLinearGradient plate(rect.topLeft(), rect.bottomLeft());
    plate.setColorAt(0, QColor(56, 58, 62));
    plate.setColorAt(0.35, QColor(45, 47, 50));
    plate.setColorAt(1, QColor(33, 34, 37));
    painter->fillRect(rect, plate);
    paintBrushing(painter, rect);
    painter->fillRect(QRect(rect.left(), rect.top(), rect.width(), 1), QColor(255, 255, 255, 60));
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), QColor(0, 0, 0, 160));

    for (const int x : {rect.left() + EarWidth, rect.right() - EarWidth}) {
        painter->fillRect(QRect(x, rect.top() + 1, 1, rect.height() - 2), QColor(0, 0, 0, 130));
        painter->fillRect(QRect(x + 1, rect.top() + 1, 1, rect.height() - 2), QColor(255, 255, 255, 22));
    }
    const qreal in = EarWidth / 2.0;
    int angle = 20;
    for (const qreal x : {rect.left() + in, rect.right() - in}) {
        for (const qreal y : {rect.top() + 44.0, rect.bottom() - 44.0}) {
            paintScrew(painter, {x, y}, angle);
            angle += 37;
        }
    }
}

void paintRecess(QPainter *painter, const QRect &rect, const QColor &ground)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF outside = QRectF(rect).adjusted(-1.5, -1.5, 1.5, 1.5);
    QLinearGradient edge(outside.topLeft(), outside.bottomLeft());
    edge.setColorAt(0, QColor(0, 0, 0, 200));
    edge.setColorAt(1, QColor(255, 255, 255, 70));
    painter->setPen(QPen(QBrush(edge), 2));
    painter->setBrush(ground);
    painter->drawRoundedRect(outside, 6, 6);
    painter->restore();
}

void paintGlow(QPainter *painter, const QPointF &centre, qreal radius, const QColor &color)
{
    QRadialGradient light(centre, radius);
    QColor part = color;
    light.setColorAt(0, part);
    part.setAlphaF(color.alphaF() * 0.35);
    light.setColorAt(0.45, part);
    part.setAlphaF(0);
    light.setColorAt(1, part);
    painter->setPen(Qt::NoPen);
    painter->setBrush(light);
    painter->drawEllipse(centre, radius, radius);
}

void paintLettering(QPainter *painter, const QRect &rect, int flags, const QString &text, int pixelSize)
{
    painter->setFont(letteringFont(pixelSize, pixelSize * 0.14));
    painter->setPen(QColor(0, 0, 0, 150));
    painter->drawText(rect.translated(0, 1), flags, text);
    painter->setPen(Lettering);
    painter->drawText(rect, flags, text);
}

QFont letteringFont(int pixelSize, qreal spacing)
{
    QFont font("Open Sans");
    font.setPixelSize(pixelSize);
    font.setWeight(QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
    return font;
}
} // namespace sim
