// Measures the product over its wires, on a virtual unit, beside an echo server on the same Qt sockets.
// Arguments: idle, network, latency, for some of it; everything without any.

#include "wires.h"

#include "descriptorlimit.h"
#include "mxsite.h"
#include "product.h"
#include "samples.h"
#include "testunit.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QProcess>
#include <QTcpSocket>
#include <QThread>
#include <csignal>
#include <cstdio>

namespace
{
void measureBesideEcho(const Product &product)
{
    const quint16 tcp = freeTcpPort();
    const quint16 udp = freeUdpPorts();
    QProcess echo;
    echo.start(QStringLiteral(ECHO_SERVER), {QString::number(tcp), QString::number(udp)});
    runUntil([&] {
        QTcpSocket probe;
        probe.connectToHost(QHostAddress(QHostAddress::LocalHost), tcp);
        return probe.waitForConnected(100);
    });
    measureNetwork({product.processId(), MxSite::tcpPort(), MxSite::udpPort()}, {echo.processId(), tcp, udp});
    echo.kill();
    echo.waitForFinished();
}

double millisecondsToFirstFrame(TestUnit &unit, double started)
{
    unit.hardware().waitFor([&] { return !unit.hardware().board().switchFrames().empty(); }, 10000);
    return (static_cast<double>(unit.hardware().board().switchFrames().at(0).timeUs) - started) / 1000;
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::signal(SIGPIPE, SIG_IGN);
    DescriptorLimit::raise();
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    TestUnit unit(16);

    const double started = nowMicroseconds();
    Product product;
    std::printf("\n%-46s %10.1f ms\n", "process start to first switch frame",
                millisecondsToFirstFrame(unit, started));

    // While its screen comes up the main thread sleeps now and then, and takes its time for the pages.
    QThread::sleep(10);

    const QStringList only = QCoreApplication::arguments().mid(1);
    const auto wanted = [&](const char *name) {
        return only.isEmpty() || only.contains(QLatin1String(name));
    };
    if (wanted("idle")) {
        measureIdle(product.processId(), Operation::Touchscreen);
    }
    if (wanted("network")) {
        measureBesideEcho(product);
    }
    if (wanted("latency")) {
        measureLatency(unit);
    }
    const QByteArray faults = unit.faults();
    std::printf("%s", faults.isEmpty() ? "\nthe board recorded no fault\n" : faults.constData());
    return product.end(SIGTERM) == 0 && faults.isEmpty() ? 0 : 1;
}
