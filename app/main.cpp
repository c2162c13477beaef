#include "qmxcomm.h"
#include "qmxtcp.h"
#include "qmxudp.h"
#include "signalquit.h"

#include <QApplication>
#include <QDateTime>
#include <cstdio>

namespace
{
void printTime(const char *what)
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    std::printf("%s %s\n", what, qPrintable(now));
    std::fflush(stdout);
}
} // namespace

int main(int argc, char **argv)
{
    const SignalQuit signalQuit;
    QApplication application(argc, argv);
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

    const int result = QApplication::exec();
    g_mxComm->stop();
    return result;
}
