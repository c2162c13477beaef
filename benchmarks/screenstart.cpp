#include "processinfo.h"
#include "product.h"
#include "samples.h"
#include "screens.h"
#include "testunit.h"

#include <QThread>
#include <csignal>
#include <cstdio>

namespace
{
constexpr double SplashMs = 20 * 50;       ///< for which the start picture counts up
constexpr unsigned long PagesSeconds = 11; ///< a page every two seconds, and something for making them

void measureSize(int ports)
{
    TestUnit unit(ports);
    const double started = nowMicroseconds();
    Product product;
    product.await("t1 ");
    const double shown = (nowMicroseconds() - started) / 1000;
    QThread::sleep(PagesSeconds);
    std::printf("    %3d ports                     %8.1f ms   %8.1f ms   %8.1f ms  %9.1f MiB\n", ports, shown,
                SplashMs, shown - SplashMs, memoryOf(product.processId(), "VmRSS:"));
    product.end(SIGTERM);
}
} // namespace

void measureScreenStart()
{
    std::printf(
        "\nstart to \"t1\"                     product start picture         rest    memory, all pages\n");
    for (const int ports : {16, 160}) {
        measureSize(ports);
    }
}
