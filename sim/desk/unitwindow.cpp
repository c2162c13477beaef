#include "unitwindow.h"

#include "boardview.h"
#include "faceplate.h"

#include <QCloseEvent>
#include <QPainter>

namespace sim
{
UnitWindow::UnitWindow(const UnitLayout &layout, int ports)
    : m_face(layout.window)
    , m_board(new BoardView(ports, this))
{
    setFixedSize(layout.window);
    m_board->setGeometry(layout.board);
    drawFace(layout, ports);
}

void UnitWindow::showRouting(const BoardRouting &routing)
{
    m_board->showRouting(routing);
}

void UnitWindow::closeEvent(QCloseEvent *event)
{
    // The window goes once everything that shows itself here has ended.
    event->ignore();
    emit closed();
}

void UnitWindow::paintEvent(QPaintEvent *)
{
    QPainter(this).drawPixmap(0, 0, m_face);
}

void UnitWindow::drawFace(const UnitLayout &layout, int ports)
{
    QPainter painter(&m_face);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBench(&painter, rect());
    paintPlate(&painter, layout.plate);
    const QRect title(layout.titleLeft, 20, 700, 26);
    paintLettering(&painter, title, Qt::AlignLeft | Qt::AlignVCenter, "AUDIO / VIDEO MATRIX SWITCHER", 14);
    const QString size = QString("%1 × %1").arg(ports);
    paintLettering(&painter, QRect(1000, 20, 320, 26), Qt::AlignRight | Qt::AlignVCenter, size, 16);
}
} // namespace sim
