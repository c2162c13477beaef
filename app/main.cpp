#include "displayport.h"
#include "mainwindow.h"
#include "mxapplication.h"
#include "mxshm.h"
#include "pages.h"
#include "qmxcomm.h"
#include "qmxtcp.h"
#include "qmxudp.h"
#include "signalquit.h"
#include "startpicture.h"
#include "stylesheet.h"
#include "theme.h"

#include <QDateTime>
#include <cstdio>

namespace
{
constexpr unsigned long SplashStepMs = 50;

void printTime(const char *what)
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    std::printf("%s %s\n", what, qPrintable(now));
    std::fflush(stdout);
}

/// Qt's own event loop wakes with fewer detours than the one on GLib, which nothing here needs. Before the
/// application is made; who starts the program may choose otherwise, by setting the variable.
void chooseEventLoop()
{
    constexpr char NoGlib[] = "QT_NO_GLIB";
    if (!qEnvironmentVariableIsSet(NoGlib)) {
        qputenv(NoGlib, "1");
    }
}

bool hasFrontPanel()
{
    return g_mxConfig->keypad > 0 && g_mxConfig->port <= PanelMaxPort;
}

/// The unit is operated from its front panel; the screen shows a picture.
int runFrontPanel()
{
    g_mxConfig->sleep = MxSleepNever;
    StartPicture splash(QPixmap(themed("./images/%1/startup_lcd.png")));
    splash.move(0, 0);
    splash.show();
    // The panel takes its start picture from the screen: it has to be there.
    QApplication::processEvents();
    LCD_GUI_Init();
    const int result = QApplication::exec();
    LCD_GUI_DeInit();
    return result;
}

void countUp(QSplashScreen &splash)
{
    for (int percent = 0; percent < 100; percent += 5) {
        splash.showMessage(QStringLiteral("system init ... (%1%)").arg(percent),
                           Qt::AlignHCenter | Qt::AlignBottom | Qt::AlignVCenter, Qt::white);
        QApplication::processEvents();
        QThread::msleep(SplashStepMs);
    }
}

int runTouchscreen()
{
    setTouchscreenStyle();
    StartPicture splash(QPixmap(themed("./images/%1/startup.png")));
    splash.show();
    MainWindow window;
    pMw = &window;
    countUp(splash);
    window.show();
    splash.finish(&window);
    printTime("t1");
    return QApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    const SignalQuit signalQuit;
    chooseEventLoop();
    MxApplication application(argc, argv);
    signalQuit.watch(application);

    // Never deleted: the shared objects outlive the program, for the other processes on the board.
    g_mxComm = new QMxComm(true);
    if (g_mxConfig == nullptr) {
        return 1;
    }
    g_mxComm->start();

    const QMxUdp udp(nullptr);
    const QMxTcp tcp(nullptr);
    printTime("t0");

    const int result = hasFrontPanel() ? runFrontPanel() : runTouchscreen();
    g_mxComm->stop();
    return result;
}
