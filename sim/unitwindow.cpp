#include "unitwindow.h"

#include "faceplate.h"

#include <QCloseEvent>
#include <QGuiApplication>

namespace
{
constexpr int turnMs = 30;

constexpr QRect frontPlate{0, 0, 1400, 496};
constexpr QRect touchPlate{0, 0, 1400, 704};
constexpr QRect touchGlass{62, 64, 1024, 600};
constexpr QRect touchBoard{1106, 49, 248, 630};
constexpr int left = 70;
constexpr int lcdTop = 62;
constexpr int keysLeft = 708;
constexpr int keyPitch = 60;
constexpr int keyHead = 20; ///< above the keys of a block
constexpr int halfGap = 8;  ///< between the fifth and the sixth key of a row
constexpr int functionTop = 396;

const QColor inputLight(255, 170, 60);
const QColor outputLight(90, 226, 130);
const QColor functionLight(150, 205, 255);

struct FunctionKey {
    int code;
    const char *legend;
    const char *word;
};

constexpr std::array<FunctionKey, 6> functionKeys = {{{111, "◀", "ALL"},
                                                      {112, "▶", "NONE"},
                                                      {113, "↓", "SAVE"},
                                                      {114, "↑", "LOAD"},
                                                      {115, "≡", "MENU"},
                                                      {116, "✎", "EDIT"}}};

QRect functionPlace(size_t index)
{
    return {left + 2 + static_cast<int>(index) * 84, functionTop, 76, 46};
}
} // namespace

QSize UnitWindow::extent(bool isFrontPanel)
{
    return isFrontPanel ? QSize(frontPlate.width(), 860) : touchPlate.size();
}

UnitWindow::UnitWindow(sim::VirtualUnit *unit, int ports, bool isFrontPanel)
    : m_unit(unit)
    , m_ports(ports)
    , m_isFrontPanel(isFrontPanel)
    , m_board(new BoardView(ports, this))
{
    setFixedSize(extent(isFrontPanel));
    drawFace();
    if (isFrontPanel) {
        addFrontPanel();
    } else {
        addTouchscreen();
    }
    connect(&m_timer, &QTimer::timeout, this, &UnitWindow::look);
    m_timer.start(turnMs);
}

quint64 UnitWindow::touchscreenId() const
{
    const quint64 id = m_touchscreen ? m_touchscreen->winId() : 0;
    QGuiApplication::sync();
    return id;
}

void UnitWindow::showRouting(const BoardRouting &routing)
{
    m_board->showRouting(routing);
}

void UnitWindow::closeEvent(QCloseEvent *event)
{
    // It goes when all has ended that shows itself here.
    event->ignore();
    emit closed();
}

void UnitWindow::keyPressEvent(QKeyEvent *event)
{
    if (m_remote && !event->isAutoRepeat()) {
        m_remote->press(event->text().toUpper().leftJustified(1).at(0).toLatin1());
    }
}

void UnitWindow::keyReleaseEvent(QKeyEvent *event)
{
    if (m_remote && !event->isAutoRepeat()) {
        m_remote->release();
    }
}

void UnitWindow::paintEvent(QPaintEvent *)
{
    QPainter(this).drawPixmap(0, 0, m_face);
}

int UnitWindow::keyHeight() const
{
    return m_ports > 20 ? 44 : keyPitch;
}

void UnitWindow::addTouchscreen()
{
    m_board->setGeometry(touchBoard);
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    m_touchscreen = new QWidget(this);
    m_touchscreen->setGeometry(touchGlass);
    m_touchscreen->setAttribute(Qt::WA_NativeWindow);
}

void UnitWindow::addFrontPanel()
{
    m_board->setGeometry(28, 524, 1110, 312);
    m_lcd = new LcdView(this);
    m_lcd->move(left, lcdTop);
    // Inputs begin where the LCD does, and outputs end there if there is room.
    const int height = keyHead + (m_ports + 9) / 10 * keyHeight();
    addKeys("INPUTS", 1, inputLight, lcdTop);
    addKeys("OUTPUTS", 51, outputLight,
            std::max(lcdTop + LcdView::extent.height() - height, lcdTop + height + 8));
    addFunctionKeys();
    addRemote();
}

void UnitWindow::addKeys(const QString &title, int firstCode, const QColor &light, int top)
{
    QPainter painter(&m_face);
    const auto columnLeft = [](int column) { return column * keyPitch + (column >= 5 ? halfGap : 0); };
    const QRect head(keysLeft + 6, top, columnLeft(std::min(m_ports, 10)) - 12, 18);
    paintLettering(&painter, head, Qt::AlignLeft | Qt::AlignVCenter, title, 12);
    painter.fillRect(head.left() + 90, head.center().y() + 1, head.width() - 90, 1,
                     QColor(205, 208, 212, 90));
    for (int i = 0; i < m_ports; ++i) {
        const int x = keysLeft + columnLeft(i % 10);
        addKey(firstCode + i, QString::number(i + 1), light,
               {x, top + keyHead + i / 10 * keyHeight(), keyPitch, keyHeight()});
    }
}

void UnitWindow::addFunctionKeys()
{
    QPainter painter(&m_face);
    for (size_t i = 0; i < functionKeys.size(); ++i) {
        const FunctionKey &key = functionKeys[i];
        addKey(key.code, QString::fromUtf8(key.legend), functionLight, functionPlace(i));
        paintLettering(&painter, functionPlace(i).adjusted(0, 48, 0, 16), Qt::AlignCenter, key.word, 11);
    }
}

void UnitWindow::addKey(int code, const QString &legend, const QColor &light, const QRect &place)
{
    auto *key = new KeyView(code, legend, light, this);
    key->setGeometry(place);
    connect(key, &KeyView::pressed, this, [this](int pressed) { m_unit->pressKey(pressed); });
    connect(key, &KeyView::released, this, [this](int released) { m_unit->releaseKey(released); });
    m_keys.push_back(key);
}

void UnitWindow::addRemote()
{
    m_remote = new RemoteView(this);
    m_remote->move(1160, 510);
    connect(m_remote, &RemoteView::sent, this, [this](char key) { m_unit->pressRemote(key); });
}

void UnitWindow::drawFace()
{
    m_face = QPixmap(size());
    QPainter painter(&m_face);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBench(&painter, rect());
    paintPlate(&painter, m_isFrontPanel ? frontPlate : touchPlate);
    const QRect title(m_isFrontPanel ? left + 2 : touchGlass.left() + 16, 20, 700, 26);
    paintLettering(&painter, title, Qt::AlignLeft | Qt::AlignVCenter, "AUDIO / VIDEO MATRIX SWITCHER", 14);
    const QString size = QString("%1 × %1").arg(m_ports);
    paintLettering(&painter, QRect(1000, 20, 320, 26), Qt::AlignRight | Qt::AlignVCenter, size, 16);
    if (m_isFrontPanel) {
        const QRect receiver(left + 530, functionTop + 10, 26, 26);
        painter.setPen(QPen(QColor(0, 0, 0), 2));
        painter.setBrush(QColor(46, 10, 16));
        painter.drawEllipse(receiver);
        paintLettering(&painter, receiver.adjusted(0, 38, 2, 26), Qt::AlignCenter, "IR", 11);
    } else {
        paintRecess(&painter, touchGlass.adjusted(-12, -12, 12, 12), QColor(10, 10, 11));
    }
}

void UnitWindow::look()
{
    if (!m_isFrontPanel) {
        return;
    }
    m_lcd->showPicture(m_unit->lcd(), m_unit->panelLight());
    const sim::KeyPanel panel = m_unit->keys();
    for (KeyView *key : m_keys) {
        key->setLit(panel.isLit(key->code()));
    }
}
