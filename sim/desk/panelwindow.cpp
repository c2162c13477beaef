#include "panelwindow.h"

#include "faceplate.h"
#include "keyview.h"
#include "lcdview.h"
#include "remoteview.h"
#include "virtualunit.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cstddef>

namespace sim
{
namespace
{
constexpr int TurnMs = 30;

constexpr int Left = 70;
constexpr int LcdTop = 62;
constexpr int KeysLeft = 708;
constexpr int KeyPitch = 60;
constexpr int KeyHead = 20; ///< above the keys of a block
constexpr int HalfGap = 8;  ///< between the fifth and the sixth key of a row
constexpr int FunctionTop = 396;
constexpr UnitLayout Places{
    PanelWindow::Extent, {0, 0, PanelWindow::Extent.width(), 496}, Left + 2, {28, 524, 1110, 312}};

const QColor InputLight(255, 170, 60);
const QColor OutputLight(90, 226, 130);
const QColor FunctionLight(150, 205, 255);

struct FunctionKey {
    int code;
    const char *legend;
    const char *word;
};

constexpr std::array<FunctionKey, 6> FunctionKeys = {{{111, "◀", "ALL"},
                                                      {112, "▶", "NONE"},
                                                      {113, "↓", "SAVE"},
                                                      {114, "↑", "LOAD"},
                                                      {115, "≡", "MENU"},
                                                      {116, "✎", "EDIT"}}};

QRect functionPlace(std::size_t index)
{
    return {Left + 2 + static_cast<int>(index) * 84, FunctionTop, 76, 46};
}

int keyHeight(int ports)
{
    return ports > 20 ? 44 : KeyPitch;
}
} // namespace

PanelWindow::PanelWindow(VirtualUnit *unit, int ports)
    : UnitWindow(Places, ports)
    , m_unit(unit)
    , m_lcd(new LcdView(this))
    , m_remote(new RemoteView(this))
{
    m_lcd->move(Left, LcdTop);
    addKeys(ports);
    addFunctionKeys();
    addRemote();
    drawReceiver();
    connect(&m_timer, &QTimer::timeout, this, &PanelWindow::look);
    m_timer.start(TurnMs);
}

void PanelWindow::keyPressEvent(QKeyEvent *event)
{
    if (!event->isAutoRepeat()) {
        // Of bytes in UTF-8 only ASCII letters change, and nothing else turns into a letter of the remote.
        m_remote->press(event->text().toUtf8().toUpper().leftJustified(1).at(0));
    }
}

void PanelWindow::keyReleaseEvent(QKeyEvent *event)
{
    if (!event->isAutoRepeat()) {
        m_remote->release();
    }
}

void PanelWindow::addKeys(int ports)
{
    // Inputs begin where the LCD does, and outputs end there if there is room.
    const int height = KeyHead + (ports + 9) / 10 * keyHeight(ports);
    addKeyBlock("INPUTS", ports, 1, InputLight, LcdTop);
    addKeyBlock("OUTPUTS", ports, 51, OutputLight,
                std::max(LcdTop + LcdView::Extent.height() - height, LcdTop + height + 8));
}

void PanelWindow::addKeyBlock(const QString &title, int ports, int firstCode, const QColor &light, int top)
{
    QPainter painter(face());
    const auto columnLeft = [](int column) { return column * KeyPitch + (column >= 5 ? HalfGap : 0); };
    const QRect head(KeysLeft + 6, top, columnLeft(std::min(ports, 10)) - 12, 18);
    paintLettering(&painter, head, Qt::AlignLeft | Qt::AlignVCenter, title, 12);
    painter.fillRect(head.left() + 90, head.center().y() + 1, head.width() - 90, 1,
                     QColor(205, 208, 212, 90));
    for (int i = 0; i < ports; ++i) {
        const int x = KeysLeft + columnLeft(i % 10);
        addKey(firstCode + i, QString::number(i + 1), light,
               {x, top + KeyHead + i / 10 * keyHeight(ports), KeyPitch, keyHeight(ports)});
    }
}

void PanelWindow::addFunctionKeys()
{
    QPainter painter(face());
    for (std::size_t i = 0; i < FunctionKeys.size(); ++i) {
        const FunctionKey &key = FunctionKeys[i];
        addKey(key.code, QString::fromUtf8(key.legend), FunctionLight, functionPlace(i));
        paintLettering(&painter, functionPlace(i).adjusted(0, 48, 0, 16), Qt::AlignCenter, key.word, 11);
    }
}

void PanelWindow::addKey(int code, const QString &legend, const QColor &light, const QRect &place)
{
    auto *key = new KeyView(code, legend, light, this);
    key->setGeometry(place);
    connect(key, &KeyView::pressed, this, [this](int pressed) { m_unit->pressKey(pressed); });
    connect(key, &KeyView::released, this, [this](int released) { m_unit->releaseKey(released); });
    m_keys.push_back(key);
}

void PanelWindow::addRemote()
{
    m_remote->move(1160, 510);
    connect(m_remote, &RemoteView::sent, this, [this](char key) { m_unit->pressRemote(key); });
}

/// Where the remote is to be pointed at.
void PanelWindow::drawReceiver()
{
    QPainter painter(face());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect receiver(Left + 530, FunctionTop + 10, 26, 26);
    painter.setPen(QPen(QColor(0, 0, 0), 2));
    painter.setBrush(QColor(46, 10, 16));
    painter.drawEllipse(receiver);
    paintLettering(&painter, receiver.adjusted(0, 38, 2, 26), Qt::AlignCenter, "IR", 11);
}

void PanelWindow::look()
{
    m_lcd->showPicture(m_unit->lcd(), m_unit->panelLight());
    const KeyPanel panel = m_unit->keys();
    for (KeyView *key : m_keys) {
        key->setLit(panel.isLit(key->code()));
    }
}
} // namespace sim
