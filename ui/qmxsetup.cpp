#include "qmxsetup.h"

#include "busyscope.h"
#include "mxshm.h"
#include "qmxcomm.h"
#include "qmxkeyboard.h"
#include "touchbutton.h"

#include <QBoxLayout>
#include <QScrollArea>
#include <QScrollBar>

namespace
{
constexpr int MaxCaptionLength = 16;
constexpr int Columns = 4; ///< entries beside each other
constexpr int EntryHeight = 48;
constexpr int NumberWidth = 50;
constexpr int Spacing = 3;
constexpr int ScrollStep = 8 * (EntryHeight + Spacing); ///< what is visible at once
constexpr QSize ButtonSize(160, 65);

enum List { SceneList, InputList, OutputList };
enum Action { Default, Load, Save };

/// The captions that a list shows; none for a number that is no list's.
struct Captions {
    SharedText<32> *texts;
    int count;
};

Captions captionsOf(int list)
{
    MxShm &shm = *g_mxConfig;
    switch (list) {
    case SceneList:
        return {shm.sceneCaption, sceneCount(shm)};
    case InputList:
        return {shm.inputCaption, portCount(shm)};
    case OutputList:
        return {shm.outputCaption, portCount(shm)};
    default:
        return {nullptr, 0};
    }
}
} // namespace

QMxSetup::QMxSetup(QWidget *parent)
    : QWidget(parent)
    , m_numbers(new QButtonGroup(this))
    , m_captions(new QButtonGroup(this))
    , m_lists(new QButtonGroup(this))
    , m_actions(new QButtonGroup(this))
{
    connectClicks(m_captions, this, &QMxSetup::OnCapPressed);
    connectClicks(m_lists, this, &QMxSetup::OnCapSelectPressed);
    connectClicks(m_actions, this, &QMxSetup::OnCapActionPressed);

    auto *layout = new QVBoxLayout(this);
    layout->setMargin(3);
    layout->setSpacing(2);
    layout->addWidget(makeEntries());
    layout->addLayout(makeButtons());

    clickButton(m_lists, SceneList);
    connect(g_mxComm, &QMxComm::OnLoadCaption, this, &QMxSetup::OnLoadCaption);
    m_keyboard = new QMxKeyboard(this);
}

QScrollArea *QMxSetup::makeEntries()
{
    auto *entries = new QWidget;
    auto *grid = new QGridLayout(entries);
    grid->setMargin(Spacing);
    grid->setSpacing(Spacing);
    const int count = qMax(portCount(*g_mxConfig), sceneCount(*g_mxConfig));
    for (int i = 0; i < count; ++i) {
        auto *number = new TouchButton({NumberWidth, EntryHeight}, QString::asprintf("%02d :", i + 1));
        number->setStyleSheet(QStringLiteral("QPushButton {font-size: 12px; border: solid 0; color:#000000; "
                                             "background-color:#eeeeee; }"));
        auto *caption = new TouchButton;
        caption->setCheckable(true);
        caption->setStyleSheet(QStringLiteral("QPushButton {font-size: 12px;}"));
        caption->setFixedHeight(EntryHeight);
        // All columns share the width, however long a caption is.
        caption->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        const int column = 2 * (i % Columns);
        grid->addWidget(number, i / Columns, column);
        grid->addWidget(caption, i / Columns, column + 1);
        grid->setColumnStretch(column + 1, 1);
        m_numbers->addButton(number, i);
        m_captions->addButton(caption, i);
    }
    grid->setRowStretch(grid->rowCount(), 1);
    auto *area = new QScrollArea;
    area->setWidget(entries);
    area->setWidgetResizable(true);
    area->verticalScrollBar()->setSingleStep(ScrollStep);
    return area;
}

QLayout *QMxSetup::makeButtons()
{
    auto *row = new QHBoxLayout;
    row->setMargin(Spacing);
    row->setSpacing(Spacing);
    const auto add = [row](QButtonGroup *group, int id, const char *text, TouchButton::Kind kind) {
        auto *button = new TouchButton(ButtonSize, QLatin1String(text), kind);
        row->addWidget(button);
        group->addButton(button, id);
    };
    add(m_lists, SceneList, "Scene", TouchButton::Checkable);
    add(m_lists, InputList, "Input", TouchButton::Checkable);
    add(m_lists, OutputList, "Output", TouchButton::Checkable);
    row->addSpacing(20);
    add(m_actions, Default, "Default", TouchButton::Plain);
    add(m_actions, Load, "Load", TouchButton::Plain);
    add(m_actions, Save, "Save", TouchButton::Plain);
    return row;
}

void QMxSetup::OnLoadCaption()
{
    OnCapSelectPressed(m_lists->checkedId());
}

void QMxSetup::OnCapPressed(int id)
{
    if (auto *button = qobject_cast<QPushButton *>(m_captions->button(id))) {
        m_keyboard->showModal(button, MaxCaptionLength, QMxKeyboard::FreeText);
    }
}

void QMxSetup::OnCapSelectPressed(int list)
{
    const Captions captions = captionsOf(list);
    if (captions.texts != nullptr) {
        showCaptions(m_captions, captions.texts, captions.count);
        showEntries(captions.count);
    }
}

void QMxSetup::showEntries(int count)
{
    for (const QButtonGroup *group : {m_numbers, m_captions}) {
        const QList<QAbstractButton *> buttons = group->buttons();
        for (int i = 0; i < buttons.size(); ++i) {
            buttons.at(i)->setVisible(i < count);
        }
    }
}

void QMxSetup::OnCapActionPressed(int action)
{
    switch (action) {
    case Default:
        return showDefaults();
    case Load:
        return load();
    case Save:
        return store();
    }
}

void QMxSetup::showDefaults()
{
    const QList<QAbstractButton *> buttons = m_captions->buttons();
    const int count = qMin(buttons.size(), captionsOf(m_lists->checkedId()).count);
    for (int i = 0; i < count; ++i) {
        buttons.at(i)->setText(QString::number(i + 1));
    }
}

void QMxSetup::load()
{
    const BusyScope busy(m_actions->button(Load));
    g_mxComm->LoadCaption();
}

void QMxSetup::store()
{
    const BusyScope busy(m_actions->button(Save));
    const Captions captions = captionsOf(m_lists->checkedId());
    const QList<QAbstractButton *> buttons = m_captions->buttons();
    const int count = qMin(buttons.size(), captions.count);
    for (int i = 0; i < count; ++i) {
        captions.texts[i].set(buttons.at(i)->text().toLatin1());
    }
    emit captionsStored();
    g_mxComm->SaveCaption();
}

void QMxSetup::setSaveEnabled(bool enabled)
{
    m_actions->button(Save)->setEnabled(enabled);
}
