#include "touchscreenwindow.h"

#include "faceplate.h"

#include <QGuiApplication>
#include <QPainter>

namespace
{
constexpr QRect glass{62, 64, 1024, 600};
constexpr UnitLayout places{
    TouchscreenWindow::extent, {{0, 0}, TouchscreenWindow::extent}, glass.left() + 16, {1106, 49, 248, 630}};
} // namespace

TouchscreenWindow::TouchscreenWindow(int ports)
    : UnitWindow(places, ports)
    , m_touchscreen(new QWidget(this))
{
    QPainter painter(face());
    paintRecess(&painter, glass.adjusted(-12, -12, 12, 12), QColor(10, 10, 11));
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    m_touchscreen->setGeometry(glass);
    m_touchscreen->setAttribute(Qt::WA_NativeWindow);
}

quint64 TouchscreenWindow::touchscreenId() const
{
    const quint64 id = m_touchscreen->winId();
    QGuiApplication::sync();
    return id;
}
