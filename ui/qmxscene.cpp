#include "qmxscene.h"

#include "busyscope.h"
#include "mxshm.h"
#include "page.h"
#include "qmxcomm.h"
#include "qmxwidget.h"
#include "routing.h"
#include "touchbutton.h"

#include <QBoxLayout>

namespace
{
constexpr QSize ViewSize(200, 495);
constexpr int Columns = 5;
constexpr QSize ActionSize(180, 65);

enum Action { Load, Save };

QMxWidget *makeView()
{
    auto *view = new QMxWidget;
    view->setFixedSize(ViewSize);
    return view;
}

void showSlot(QMxWidget *view, int slot)
{
    quint16 map[MxMaxPort] = {};
    Routing::copyMap(*g_mxConfig, slot, map, MxMaxPort);
    view->setMap(map);
}
} // namespace

QMxScene::QMxScene(QWidget *parent)
    : QWidget(parent)
    , m_scenes(new QButtonGroup(this))
    , m_actions(new QButtonGroup(this))
    , m_liveView(makeView())
    , m_sceneView(makeView())
{
    hide();
    connectClicks(m_scenes, this, &QMxScene::OnScenePressed);
    connectClicks(m_actions, this, &QMxScene::OnSceneActionPressed);

    auto *layout = new QHBoxLayout(this);
    layout->setMargin(0);
    layout->setSpacing(0);
    layout->addWidget(m_liveView);
    layout->addLayout(makeButtons());
    layout->addWidget(m_sceneView);

    clickButton(m_scenes, 0);
    OnLoadCaption();
    connect(g_mxComm, &QMxComm::OnLoadCaption, this, &QMxScene::OnLoadCaption);
    startTimer(RefreshMs, Qt::CoarseTimer);
}

QLayout *QMxScene::makeButtons()
{
    auto *grid = new QGridLayout;
    grid->setMargin(10);
    grid->setSpacing(5);
    const int count = sceneCount(*g_mxConfig);
    const QSize size(115, count < 25 ? 50 : 48);
    for (int i = 0; i < count; ++i) {
        auto *button = new TouchButton(size, QString(), TouchButton::Checkable);
        grid->addWidget(button, i / Columns, i % Columns);
        m_scenes->addButton(button, i);
    }
    const int lastRow = count / Columns + 1;
    const Qt::Alignment alignment = Qt::AlignHCenter | Qt::AlignBottom | Qt::AlignVCenter;
    auto *load = new TouchButton(ActionSize, QStringLiteral("<< load"));
    grid->addWidget(load, lastRow, 0, 1, 2, alignment);
    m_actions->addButton(load, Load);
    auto *save = new TouchButton(ActionSize, QStringLiteral("save >>"));
    grid->addWidget(save, lastRow, 3, 1, 2, alignment);
    m_actions->addButton(save, Save);
    return grid;
}

void QMxScene::OnLoadCaption()
{
    showCaptions(m_scenes, g_mxConfig->sceneCaption, sceneCount(*g_mxConfig));
}

void QMxScene::OnScenePressed(int) {}

void QMxScene::OnSceneActionPressed(int action)
{
    QAbstractButton *button = m_actions->button(action);
    if (button == nullptr) {
        return;
    }
    const BusyScope busy(button);
    const int scene = m_scenes->checkedId() + 1;
    if (action == Load) {
        g_mxComm->LoadScene(scene);
    } else {
        g_mxComm->SaveScene(scene);
    }
}

void QMxScene::setSaveEnabled(bool enabled)
{
    m_actions->button(Save)->setEnabled(enabled);
}

void QMxScene::timerEvent(QTimerEvent *)
{
    if (!isHidden()) {
        showSlot(m_liveView, 0);
        showSlot(m_sceneView, m_scenes->checkedId() + 1);
    }
}
