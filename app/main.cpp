#include "clientturns.h"
#include "commandline.h"
#include "descriptorlimit.h"
#include "frontpanel.h"
#include "mainwindow.h"
#include "mxapplication.h"
#include "mxshm.h"
#include "mxsite.h"
#include "panelports.h"
#include "qmxcomm.h"
#include "qmxtcp.h"
#include "qmxudp.h"
#include "servicemanager.h"
#include "signalquit.h"
#include "startpicture.h"
#include "stylesheet.h"
#include "theme.h"
#include "tickcount.h"
#include "unitlock.h"

#include <QDateTime>
#include <csignal>
#include <cstdio>
#include <memory>

namespace
{
constexpr unsigned long SplashStepMs = 50;

/// Each line is seen when it is printed, and a reader that goes away does not end the unit.
void prepareOutput()
{
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    std::signal(SIGPIPE, SIG_IGN);
}

void printTime(const char *what)
{
    const QString now =
        QDateTime::fromMSecsSinceEpoch(systemMs()).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    std::printf("%s %s\n", what, qPrintable(now));
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

QString summary()
{
    return QStringLiteral("%1 x %1, TCP port %2, UDP ports from %3")
        .arg(portCount(*g_mxConfig))
        .arg(MxSite::tcpPort())
        .arg(MxSite::udpPort());
}

/// The unit is operated from its front panel; the screen shows a picture, all the time.
int runFrontPanel(ClientTurns &turns)
{
    g_mxConfig->sleep = MxSleepNever;
    StartPicture splash(QPixmap(themed("./images/%1/startup_lcd.png")));
    splash.move(0, 0);
    splash.show();
    // The panel takes its start picture from the screen: it has to be there.
    QApplication::processEvents();
    LCD_GUI_Init();
    turns.start();
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

/// The window comes up behind the start picture, which is not kept.
std::unique_ptr<MainWindow> openWindow()
{
    // Read as an image: a pixmap that is read from a file stays in a cache.
    StartPicture splash(QPixmap::fromImage(QImage(themed("./images/%1/startup.png"))));
    splash.show();
    auto window = std::make_unique<MainWindow>();
    pMw = window.get();
    countUp(splash);
    window->show();
    splash.finish(window.get());
    return window;
}

int runTouchscreen(ClientTurns &turns)
{
    setTouchscreenStyle();
    const std::unique_ptr<MainWindow> window = openWindow();
    printTime("t1");
    turns.start();
    return QApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    if (CommandLine::answered(argc, argv)) {
        return 0;
    }
    DescriptorLimit::raise();
    prepareOutput();
    const SignalQuit signalQuit;
    chooseEventLoop();
    MxApplication application(argc, argv);
    if (CommandLine::isWrong(QApplication::arguments())) {
        return 2;
    }
    ClientTurns turns;
    signalQuit.watch(static_cast<QApplication &>(application), [&turns] {
        turns.stop();
        QApplication::quit();
    });

    const UnitLock lock;
    if (lock.isTaken()) {
        std::fputs("mxcontrol: another one runs on this unit\n", stderr);
        return 1;
    }

    // Never deleted: the shared objects outlive the program, for the other processes on the board.
    g_mxComm = new QMxComm(true);
    if (g_mxConfig == nullptr) {
        return 1;
    }
    g_mxComm->start();
    if (!g_mxComm->isRunning()) { // which Qt says; a unit that serves nothing is no use
        return 1;
    }

    const QMxUdp udp(turns, nullptr);
    const QMxTcp tcp(turns, nullptr);
    printTime("t0");
    ServiceManager service;
    service.ready(summary());

    const int result = hasFrontPanel(*g_mxConfig) ? runFrontPanel(turns) : runTouchscreen(turns);
    g_mxComm->stop();
    return result;
}
