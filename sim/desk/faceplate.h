#pragma once

#include <QFont>
#include <QPainter>
#include <QSize>

namespace sim
{
// What the front of the unit is made of. For paint events.

/// The bench that the unit stands on, and what lies there with it.
void paintBench(QPainter *painter, const QRect &rect);

/// The anodised front plate with its mounting screws, and the shadow below it.
void paintPlate(QPainter *painter, const QRect &rect);

/// A recess in the plate, for glass.
void paintRecess(QPainter *painter, const QRect &rect, const QColor &ground);

/// A soft round light; `radius` is where it has faded away.
void paintGlow(QPainter *painter, const QPointF &centre, qreal radius, const QColor &color);

/// Lettering as it is printed on the plate.
void paintLettering(QPainter *painter, const QRect &rect, int flags, const QString &text, int pixelSize);

/// The typeface of all lettering; `spacing` is added between letters, in pixels.
QFont letteringFont(int pixelSize, qreal spacing = 0);
} // namespace sim
