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

namespace
{
constexpr int turnMs = 30;

constexpr int left = 70;
constexpr int lcdTop = 62;
constexpr int keysLeft = 708;
constexpr int keyPitch = 60;
constexpr int keyHead = 20; ///< above the keys of a block
constexpr int halfGap = 8;  ///< between the fifth and the sixth key of a row
constexpr int functionTop = 396;
constexpr UnitLayout places{
    PanelWindow::extent, {0, 0, PanelWindow::extent.width(), 496}, left + 2, {28, 524, 1110, 312}};

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

int keyHeight(int ports)
{
    return ports > 20 ? 44 : keyPitch;
}
} // namespace

PanelWindow::PanelWindow(sim::VirtualUnit *unit, int ports)
    : UnitWindow(places, ports)
    , m_unit(unit)
    , m_lcd(new LcdView(this))
    , m_remote(new RemoteView(this))
{
    m_lcd->move(left, lcdTop);
    addKeys(ports);
    addFunctionKeys();
    addRemote();
    drawReceiver();
    connect(&m_timer, &QTimer::timeout, this, &PanelWindow::look);
    m_timer.start(turnMs);
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
    const int height = keyHead + (ports + 9) / 10 * keyHeight(ports);
    addKeyBlock("INPUTS", ports, 1, inputLight, lcdTop);
    addKeyBlock("OUTPUTS", ports, 51, outputLight,
                std::max(lcdTop + LcdView::extent.height() - height, lcdTop + height + 8));
}

void PanelWindow::addKeyBlock(const QString &title, int ports, int firstCode, const QColor &light, int top)
{
    QPainter painter(face());
    const auto columnLeft = [](int column) { return column * keyPitch + (column >= 5 ? halfGap : 0); };
    const QRect head(keysLeft + 6, top, columnLeft(std::min(ports, 10)) - 12, 18);
    paintLettering(&painter, head, Qt::AlignLeft | Qt::AlignVCenter, title, 12);
    painter.fillRect(head.left() + 90, head.center().y() + 1, head.width() - 90, 1,
                     QColor(205, 208, 212, 90));
    for (int i = 0; i < ports; ++i) {
        const int x = keysLeft + columnLeft(i % 10);
        addKey(firstCode + i, QString::number(i + 1), light,
               {x, top + keyHead + i / 10 * keyHeight(ports), keyPitch, keyHeight(ports)});
    }
}

void PanelWindow::addFunctionKeys()
{
    QPainter painter(face());
    for (size_t i = 0; i < functionKeys.size(); ++i) {
        const FunctionKey &key = functionKeys[i];
        addKey(key.code, QString::fromUtf8(key.legend), functionLight, functionPlace(i));
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
    const QRect receiver(left + 530, functionTop + 10, 26, 26);
    painter.setPen(QPen(QColor(0, 0, 0), 2));
    painter.setBrush(QColor(46, 10, 16));
    painter.drawEllipse(receiver);
    paintLettering(&painter, receiver.adjusted(0, 38, 2, 26), Qt::AlignCenter, "IR", 11);
}

void PanelWindow::look()
{
    m_lcd->showPicture(m_unit->lcd(), m_unit->panelLight());
    const sim::KeyPanel panel = m_unit->keys();
    for (KeyView *key : m_keys) {
        key->setLit(panel.isLit(key->code()));
    }
}
