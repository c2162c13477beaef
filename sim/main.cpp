// mxsim: the control program on a unit without hardware, for people.

#include "session.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/signalfd.h>

namespace
{
/// Readable once the user wants to end the program. To be called before there is any other thread.
int openStopSignals()
{
    signal(SIGPIPE, SIG_IGN);
    sigset_t stop;
    sigemptyset(&stop);
    sigaddset(&stop, SIGINT);
    sigaddset(&stop, SIGTERM);
    sigprocmask(SIG_BLOCK, &stop, nullptr);
    return signalfd(-1, &stop, SFD_CLOEXEC | SFD_NONBLOCK);
}

int fail(const QString &error)
{
    fprintf(stderr, "mxsim: %s\n", qPrintable(error));
    return 1;
}
} // namespace

int main(int argc, char *argv[])
{
    const sim::Descriptor stopSignals(openStopSignals());
    QCoreApplication app(argc, argv);

    Options options;
    QString error = parseOptions(app.arguments(), &options);
    if (!error.isEmpty()) {
        return fail(error);
    }

    Session session(options);
    QObject::connect(&session, &Session::ended, [&error, &app](const QString &reason, int code) {
        if (error.isEmpty()) {
            fail(error = reason);
            app.exit(code);
        }
    });
    error = session.start();
    if (!error.isEmpty()) {
        return fail(error);
    }

    const QSocketNotifier notifier(stopSignals.get(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    return app.exec();
}
