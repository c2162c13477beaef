// mxsim: the control program on a unit without hardware, for people.

#include "descriptor.h"
#include "deskrun.h"
#include "session.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sys/signalfd.h>
#include <utility>
#include <xcb/xcb.h>

using namespace sim;

namespace
{
/// Variables with which a desk changes the look and the size of Qt's widgets.
constexpr const char *DeskVariables[] = {"QT_QPA_PLATFORMTHEME",    "QT_STYLE_OVERRIDE",
                                         "QT_SCALE_FACTOR",         "QT_AUTO_SCREEN_SCALE_FACTOR",
                                         "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"};

/// To be called before there is any other thread. \return a descriptor, readable once the user wants to end
/// mxsim
int openStopSignals()
{
    ::signal(SIGPIPE, SIG_IGN);
    sigset_t stop;
    ::sigemptyset(&stop);
    ::sigaddset(&stop, SIGINT);
    ::sigaddset(&stop, SIGTERM);
    ::sigprocmask(SIG_BLOCK, &stop, nullptr);
    return ::signalfd(-1, &stop, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// Says why mxsim ends, once: whatever is told later follows from that. \return the exit code
int fail(const QString &reason)
{
    static bool isSaid = false;
    if (!reason.isEmpty() && !std::exchange(isSaid, true)) {
        std::fprintf(stderr, "mxsim: %s\n", qPrintable(reason));
    }
    return 1;
}

/// The platform plugin of Qt aborts when the display cannot be opened.
Result checkDisplay()
{
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    const bool isOpen = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    if (!isOpen) {
        return {QString("there is no desk at the display \"%1\"").arg(qgetenv("DISPLAY").constData())};
    }
    return {};
}

/// Makes the unit look the same on every desk, and keeps quiet what Qt says of the desk's peculiarities.
void settleLook()
{
    for (const char *name : DeskVariables) {
        qunsetenv(name);
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    // A window with a visual of its own for OpenGL could not be the parent of another program's.
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    QLoggingCategory::setFilterRules("default.warning=false\nqt.qpa.xcb.warning=false");
}

std::unique_ptr<Run> theRun;

/// Qt ends the process at once, by exit(), when the display goes; what was started has to end even then.
void endLost()
{
    if (theRun) {
        fail("the screen was closed");
        theRun.reset();
        std::_Exit(1);
    }
}

int run(int stopSignals)
{
    QObject::connect(theRun.get(), &Run::ended, [isOver = false](const QString &reason, int code) mutable {
        if (!std::exchange(isOver, true)) {
            fail(reason);
            QCoreApplication::exit(code);
        }
    });
    const Result started = theRun->start();
    if (!started.isDone()) {
        return fail(started.failure);
    }
    const QSocketNotifier notifier(stopSignals, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, QCoreApplication::instance(),
                     &QCoreApplication::quit);
    return QCoreApplication::exec();
}
} // namespace

int main(int argc, char *argv[])
{
    const Descriptor stopSignals(openStopSignals());
    auto app = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationVersion(MXSIM_VERSION);
    Options options;
    const Result parsed = parseOptions(app->arguments(), &options);
    const bool hasWindow = options.screen == ScreenKind::Window;
    const Result usable = hasWindow ? parsed.then(checkDisplay) : parsed;
    if (!usable.isDone()) {
        return fail(usable.failure);
    }
    if (hasWindow) {
        settleLook();
        app.reset();
        app = std::make_unique<QApplication>(argc, argv);
        std::atexit(endLost);
    }

    if (options.screen == ScreenKind::Vnc) {
        theRun = std::make_unique<DeskRun>(options, app->arguments());
    } else {
        theRun = std::make_unique<Session>(options);
    }
    const int code = run(stopSignals.get());
    theRun.reset();
    return code;
}
