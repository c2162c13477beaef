#include "qmxswitch.h"

#include "mxshm.h"
#include "page.h"
#include "qmxcomm.h"
#include "qmxwidget.h"
#include "routing.h"
#include "theme.h"
#include "touchbutton.h"

#include <QBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <cstring>

namespace
{
constexpr QSize MapSize(200, 485);
constexpr QSize ActionSize(150, 75);
constexpr int ScrollStep = 480; ///< ten rows of the smallest buttons

enum Action { ToAll, ToNone, Straight, AllOff, Scenes, ActionCount };

struct AreaSizes {
    int upToPorts;
    QSize button;
    int columns;
    bool hasMap;
    const char *styleSheet;
};

constexpr AreaSizes Sizes[] = {{10, {155, 95}, 2, true, ""},
                               {21, {105, 68}, 3, true, ""},
                               {40, {102, 46}, 4, false, ""},
                               {MxMaxPort, {75, 45}, 5, false, "font-size: 12px"}};

const AreaSizes &areaSizes(int ports)
{
    const AreaSizes *sizes = Sizes;
    while (ports > sizes->upToPorts) {
        ++sizes;
    }
    return *sizes;
}
} // namespace

QMxSwitch::QMxSwitch(QWidget *parent)
    : QWidget(parent)
    , m_inputs(new QButtonGroup(this))
    , m_outputs(new QButtonGroup(this))
    , m_actions(new QButtonGroup(this))
{
    hide();
    const int ports = portCount(*g_mxConfig);
    setStyleSheet(QLatin1String(areaSizes(ports).styleSheet));
    m_outputs->setExclusive(false);
    connectClicks(m_inputs, this, &QMxSwitch::OnInputPressed);
    connectClicks(m_outputs, this, &QMxSwitch::OnOutputPressed);
    connectClicks(m_actions, this, &QMxSwitch::OnActionPressed);

    auto *layout = new QHBoxLayout(this);
    layout->setMargin(0);
    layout->setSpacing(0);
    layout->addWidget(makeArea(m_inputs, ports));
    if (areaSizes(ports).hasMap) {
        m_map = new QMxWidget;
        m_map->setFixedSize(MapSize);
        layout->addWidget(m_map);
    } else {
        layout->addSpacing(2);
    }
    layout->addWidget(makeArea(m_outputs, ports));
    layout->addSpacing(2);
    layout->addLayout(makeActions());

    OnLoadCaption();
    connect(g_mxComm, &QMxComm::OnLoadCaption, this, &QMxSwitch::OnLoadCaption);
    startTimer(RefreshMs, Qt::CoarseTimer);
}

QScrollArea *QMxSwitch::makeArea(QButtonGroup *group, int ports)
{
    const AreaSizes &sizes = areaSizes(ports);
    auto *buttons = new QWidget;
    auto *grid = new QGridLayout(buttons);
    grid->setMargin(3);
    grid->setSpacing(3);
    for (int i = 0; i < ports; ++i) {
        auto *button = new TouchButton(sizes.button, QString(), TouchButton::Checkable);
        grid->addWidget(button, i / sizes.columns, i % sizes.columns);
        group->addButton(button, i);
    }
    auto *area = new QScrollArea;
    area->setWidget(buttons);
    area->setAlignment(Qt::AlignHCenter);
    area->verticalScrollBar()->setSingleStep(ScrollStep);
    return area;
}

QBoxLayout *QMxSwitch::makeActions()
{
    auto *column = new QVBoxLayout;
    column->setMargin(2);
    column->setSpacing(2);
    for (int action = 0; action < ActionCount; ++action) {
        auto *button = new TouchButton(ActionSize);
        button->setStyleSheet(
            themed("QPushButton {border: solid 0;  border-radius:0; "
                   "background-image: url(./images/%1/btn_act_%2.png); }"
                   "QPushButton:pressed {background-image: url(./images/%1/btn_act_%2_.png)}",
                   action + 1));
        column->addWidget(button, 0, Qt::AlignRight);
        m_actions->addButton(button, action);
    }
    return column;
}

void QMxSwitch::selectInput(int input)
{
    clickButton(m_inputs, input);
}

void QMxSwitch::OnLoadCaption()
{
    showCaptions(m_inputs, g_mxConfig->inputCaption, portCount(*g_mxConfig));
    showCaptions(m_outputs, g_mxConfig->outputCaption, portCount(*g_mxConfig));
}

void QMxSwitch::OnInputPressed(int) {}

void QMxSwitch::OnOutputPressed(int output)
{
    // Its button has changed by itself, which may be wrong while the map is as before.
    m_shown.ports = 0;
    if (output < 0 || output >= portCount(*g_mxConfig)) {
        return;
    }
    const int selected = m_inputs->checkedId();
    const bool carried = g_mxConfig->map[output] == selected;
    g_mxComm->MxCmdOneToOne(carried ? MxNoInput : static_cast<quint16>(selected),
                            static_cast<quint16>(output));
}

void QMxSwitch::OnActionPressed(int action)
{
    const auto selected = static_cast<quint16>(m_inputs->checkedId());
    switch (action) {
    case ToAll:
        return g_mxComm->MxCmdOneToAll(selected);
    case ToNone:
        return g_mxComm->MxCmdOneToNone(selected);
    case Straight:
        return g_mxComm->MxCmdAllToAll();
    case AllOff:
        return g_mxComm->MxCmdAllToNone();
    case Scenes:
    case ActionCount: // no button has it; whoever calls with it means the scenes
        emit scenesWanted();
    }
}

void QMxSwitch::timerEvent(QTimerEvent *)
{
    if (isHidden()) {
        return;
    }
    Shown now = {portCount(*g_mxConfig), m_inputs->checkedId(), {}};
    Routing::copyMap(*g_mxConfig, 0, now.map, MxMaxPort);
    if (std::memcmp(&now, &m_shown, sizeof now) != 0) {
        showRouting(now);
    }
}

void QMxSwitch::showRouting(const Shown &now)
{
    m_shown = now;
    if (m_map != nullptr) {
        m_map->setMap(now.map);
    }
    const QList<QAbstractButton *> outputs = m_outputs->buttons();
    const int shown = qMin(outputs.size(), now.ports);
    for (int output = 0; output < shown; ++output) {
        outputs.at(output)->setChecked(now.map[output] == now.input);
    }
}
