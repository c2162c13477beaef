#include "mainwindow.h"

#include "page.h"
#include "qmxscene.h"
#include "qmxsetup.h"
#include "qmxstatus.h"
#include "qmxswitch.h"
#include "theme.h"
#include "touchbutton.h"

#include <QBoxLayout>

MainWindow *pMw = nullptr;

namespace
{
constexpr QSize ScreenSize(1024, 600);
constexpr QRect HeaderArea(0, 0, 1024, 90);
constexpr QRect SeparatorArea(0, 90, 1024, 5);
constexpr QPoint PagePlace(0, 95);
constexpr QSize LogoSize(224, 90);
constexpr QSize MenuSize(200, 90);
constexpr int CreationMs = 2000;
} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setWindowState(Qt::WindowFullScreen);
    setUp();
    InitEarly();
    m_creationTimer = startTimer(CreationMs, Qt::CoarseTimer);
}

void MainWindow::setUp()
{
    if (objectName().isEmpty()) {
        setObjectName(QStringLiteral("MainWindow"));
    }
    resize(ScreenSize);
    auto *central = new QWidget(this);
    central->setObjectName(QStringLiteral("centralWidget"));
    setCentralWidget(central);
    setWindowTitle(tr("MainWindow"));
}

void MainWindow::InitEarly()
{
    auto *header = new QWidget(this);
    header->setGeometry(HeaderArea);
    auto *layout = new QHBoxLayout(header);
    layout->setMargin(0);
    layout->setSpacing(0);

    auto *logo = new TouchButton(LogoSize);
    logo->setStyleSheet(themed("QPushButton {border: solid 0; border-radius:0; "
                               "background-image: url(./images/%1/logo.png); }"));
    layout->addWidget(logo);

    m_menu = new QButtonGroup(this);
    connect(m_menu, static_cast<void (QButtonGroup::*)(int)>(&QButtonGroup::buttonReleased), this,
            &MainWindow::OnMenuPressed);
    for (int menu = 0; menu < MenuCount; ++menu) {
        auto *button = new TouchButton(MenuSize, QString(), TouchButton::Checkable);
        button->setStyleSheet(
            themed("QPushButton {border: solid 0; border-radius:0; "
                   "background-image: url(./images/%1/btn_menu_%2.png); }"
                   "QPushButton:checked {background-image: url(./images/%1/btn_menu_%2_.png)}",
                   menu + 1));
        layout->addWidget(button);
        m_menu->addButton(button, menu);
    }

    auto *separator = new QWidget(this);
    separator->setGeometry(SeparatorArea);
    separator->setStyleSheet(QStringLiteral("background-color:#01AFF4"));
    m_menu->button(Switch)->setChecked(true);
}

void MainWindow::timerEvent(QTimerEvent *)
{
    if (m_creationTimer == 0) {
        return;
    }
    killTimer(m_creationTimer);
    m_creationTimer = makeNextPage() ? startTimer(CreationMs, Qt::CoarseTimer) : 0;
}

/// Whether there was a page left to make.
bool MainWindow::makeNextPage()
{
    if (m_made == MenuCount) {
        return false;
    }
    m_pages[m_made] = makePage(static_cast<Menu>(m_made));
    ++m_made;
    return true;
}

QWidget *MainWindow::makePage(Menu menu)
{
    switch (menu) {
    case Switch:
        return makeSwitchPage();
    case Scene:
        return makeScenePage();
    case Setup:
        return makeSetupPage();
    case Status:
        return makeStatusPage();
    case MenuCount:
        break;
    }
    return nullptr;
}

template <typename Page>
Page *MainWindow::addPage()
{
    auto *page = new Page(this);
    page->setGeometry(QRect(PagePlace, PageSize));
    page->hide();
    return page;
}

QWidget *MainWindow::makeSwitchPage()
{
    m_switch = addPage<QMxSwitch>();
    connect(m_switch, &QMxSwitch::scenesWanted, this, [this] { clickButton(m_menu, Scene); });
    m_switch->show();
    m_switch->selectInput(0);
    return m_switch;
}

QWidget *MainWindow::makeScenePage()
{
    m_scene = addPage<QMxScene>();
    // Locked from the start, also while the page with the lock is not there yet.
    m_scene->setSaveEnabled(false);
    return m_scene;
}

QWidget *MainWindow::makeSetupPage()
{
    m_setup = addPage<QMxSetup>();
    m_setup->setSaveEnabled(false);
    connect(m_setup, &QMxSetup::captionsStored, m_switch, &QMxSwitch::OnLoadCaption);
    connect(m_setup, &QMxSetup::captionsStored, m_scene, &QMxScene::OnLoadCaption);
    return m_setup;
}

QWidget *MainWindow::makeStatusPage()
{
    auto *status = addPage<QMxStatus>();
    connect(status, &QMxStatus::saveEnabled, m_scene, &QMxScene::setSaveEnabled);
    connect(status, &QMxStatus::saveEnabled, m_setup, &QMxSetup::setSaveEnabled);
    return status;
}

void MainWindow::OnMenuPressed(int id)
{
    if (id < 0 || id >= MenuCount) {
        return;
    }
    for (int menu = 0; menu < m_made; ++menu) {
        m_pages[menu]->setVisible(menu == id);
    }
}
