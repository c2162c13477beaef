#pragma once

#include <QMainWindow>

class QButtonGroup;
class QMxScene;
class QMxSetup;
class QMxStatus;
class QMxSwitch;

/// The touchscreen's window: the header with the menu, and one page per menu entry below it. It comes up with
/// the header alone; the pages follow one by one, every two seconds. GUI thread only.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);

public slots:
    /// Shows the page of this menu entry (0 to 3) and hides the others; an entry whose page is not there yet
    /// only hides.
    void OnMenuPressed(int id);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    enum Menu { Switch, Scene, Setup, Status, MenuCount };

    void setUp();
    void InitEarly();
    bool makeNextPage();
    void makeSwitchPage();
    void makeScenePage();
    void makeSetupPage();
    void makeStatusPage();
    template <typename Page>
    Page *addPage();

    QButtonGroup *m_menu = nullptr;
    QMxSwitch *m_switch = nullptr;
    QMxScene *m_scene = nullptr;
    QMxSetup *m_setup = nullptr;
    QMxStatus *m_status = nullptr;
    int m_creationTimer = 0; ///< 0 when none runs
};

/// The one main window; null in front-panel mode.
extern MainWindow *pMw;
