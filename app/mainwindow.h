#pragma once

#include <QMainWindow>

class QButtonGroup;
class QMxScene;
class QMxSetup;
class QMxSwitch;

/// The touchscreen's window: the header with the menu, and one page per menu entry below it. It comes up with
/// the header alone; the pages follow one by one, every two seconds. GUI thread only.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);

public slots:
    /// Shows the page of this menu entry and hides the others; an entry whose page is not there yet
    /// only hides.
    void OnMenuPressed(int id);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    enum Menu { Switch, Scene, Setup, Status, MenuCount }; ///< also the order in which the pages are made

    void setUp();
    void InitEarly();
    bool makeNextPage();
    QWidget *makePage(Menu menu);
    QWidget *makeSwitchPage();
    QWidget *makeScenePage();
    QWidget *makeSetupPage();
    QWidget *makeStatusPage();
    template <typename Page>
    Page *addPage();

    QButtonGroup *m_menu = nullptr;
    QMxSwitch *m_switch = nullptr;
    QMxScene *m_scene = nullptr;
    QMxSetup *m_setup = nullptr;
    QWidget *m_pages[MenuCount] = {}; ///< null for one that is not made yet
    int m_made = 0;
    int m_creationTimer = 0; ///< 0 when none runs
};

/// The one main window; null in front-panel mode.
extern MainWindow *pMw;
