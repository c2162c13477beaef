#include "touchscreenwindow.h"

#include "faceplate.h"

#include <QGuiApplication>
#include <QPainter>

namespace sim
{
namespace
{
constexpr QRect Glass{62, 64, 1024, 600};
constexpr UnitLayout Places{
    TouchscreenWindow::Extent, {{0, 0}, TouchscreenWindow::Extent}, Glass.left() + 16, {1106, 49, 248, 630}};
} // namespace

TouchscreenWindow::TouchscreenWindow(int ports)
    : UnitWindow(Places, ports)
    , m_touchscreen(new QWidget(this))
{
    QPainter painter(face());
    paintRecess(&painter, Glass.adjusted(-12, -12, 12, 12), QColor(10, 10, 11));
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    m_touchscreen->setGeometry(Glass);
    m_touchscreen->setAttribute(Qt::WA_NativeWindow);
}

quint64 TouchscreenWindow::touchscreenId() const
{
    const quint64 id = m_touchscreen->winId();
    QGuiApplication::sync();
    return id;
}
} // namespace sim
