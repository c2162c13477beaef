#include "remoteview.h"

#include "faceplate.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <array>
#include <cstring>

namespace sim
{
namespace
{
struct RemoteKey {
    char key;
    int row;
    int column;
    const char *word; ///< what a letter stands for
};

constexpr std::array<RemoteKey, 14> RemoteKeys = {{{'1', 0, 0, ""},
                                                   {'2', 0, 1, ""},
                                                   {'3', 0, 2, ""},
                                                   {'X', 0, 3, "input"},
                                                   {'4', 1, 0, ""},
                                                   {'5', 1, 1, ""},
                                                   {'6', 1, 2, ""},
                                                   {'N', 1, 3, "output"},
                                                   {'7', 2, 0, ""},
                                                   {'8', 2, 1, ""},
                                                   {'9', 2, 2, ""},
                                                   {'R', 2, 3, "recall"},
                                                   {'0', 3, 1, ""},
                                                   {'S', 3, 3, "save"}}};
constexpr QSize KeySize{37, 34};

QRect place(const RemoteKey &key)
{
    return {QPoint(23 + key.column * 45 + (key.column == 3 ? 4 : 0), 72 + key.row * 59), KeySize};
}

void paintKey(QPainter *painter, const RemoteKey &key, bool isDown)
{
    const QRectF cap = QRectF(place(key)).translated(0, isDown ? 1.5 : 0);
    const QColor rubber = key.word[0] ? QColor(150, 92, 40) : QColor(96, 99, 104);
    QLinearGradient face(cap.topLeft(), cap.bottomLeft());
    face.setColorAt(0, rubber.lighter(isDown ? 95 : 125));
    face.setColorAt(1, rubber.darker(isDown ? 150 : 125));
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor(0, 0, 0, 150));
    painter->drawRoundedRect(QRectF(place(key)).adjusted(-1.5, -1, 1.5, 3.5), 11, 11);
    painter->setBrush(face);
    painter->drawRoundedRect(cap, 10, 10);
    painter->setFont(letteringFont(16));
    painter->setPen(QColor(240, 240, 240));
    painter->drawText(cap, Qt::AlignCenter, QString(QChar(key.key)));
    painter->setFont(letteringFont(10));
    painter->setPen(QColor(186, 188, 192));
    painter->drawText(place(key).adjusted(-8, 36, 8, 18), Qt::AlignHCenter | Qt::AlignTop, key.word);
}
} // namespace

RemoteView::RemoteView(QWidget *parent)
    : QWidget(parent)
{
    setFixedSize(Extent);
}

void RemoteView::press(char key)
{
    for (const RemoteKey &each : RemoteKeys) {
        if (each.key == key) {
            m_down = key;
            emit sent(key);
            update();
        }
    }
}

void RemoteView::release()
{
    m_down = 0;
    update();
}

void RemoteView::mousePressEvent(QMouseEvent *event)
{
    for (const RemoteKey &key : RemoteKeys) {
        if (event->button() == Qt::LeftButton && place(key).adjusted(-3, -3, 3, 3).contains(event->pos())) {
            press(key.key);
        }
    }
}

void RemoteView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        release();
    }
}

void RemoteView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(8, 10, -8, -10);
    painter.setPen(Qt::NoPen);
    for (int ring = 8; ring > 0; --ring) {
        painter.setBrush(QColor(0, 0, 0, 22));
        painter.drawRoundedRect(body.adjusted(-ring, -ring + 3, ring, ring + 2), 20 + ring, 20 + ring);
    }
    QLinearGradient shell(body.topLeft(), body.topRight());
    shell.setColorAt(0, QColor(30, 31, 33));
    shell.setColorAt(0.12, QColor(58, 60, 63));
    shell.setColorAt(0.88, QColor(50, 52, 55));
    shell.setColorAt(1, QColor(22, 23, 25));
    painter.setBrush(shell);
    painter.drawRoundedRect(body, 20, 20);

    painter.setBrush(QColor(52, 8, 14));
    painter.drawRoundedRect(QRectF(body.center().x() - 34, body.top() - 2, 68, 9), 4, 4);
    paintLettering(&painter, QRect(30, 30, 100, 24), Qt::AlignLeft | Qt::AlignVCenter, "REMOTE", 11);
    const QPointF led(body.right() - 28, 42);
    painter.setBrush(m_down ? QColor(255, 90, 80) : QColor(70, 24, 24));
    painter.drawEllipse(led, 3.5, 3.5);
    if (m_down) {
        paintGlow(&painter, led, 16, QColor(255, 70, 60, 200));
    }
    for (const RemoteKey &key : RemoteKeys) {
        paintKey(&painter, key, key.key == m_down);
    }
}
} // namespace sim
