#include "processinfo.h"
#include "samples.h"
#include "wires.h"

#include <QDir>
#include <QThread>
#include <cstdio>

namespace
{
constexpr unsigned long Seconds = 30;

/// Time on a processor of all threads, in nanoseconds.
double processorTime(const QString &process)
{
    double sum = 0;
    const QDir tasks(process + QLatin1String("/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        sum += procFile(tasks.filePath(task) + QLatin1String("/schedstat")).split(' ').at(0).toDouble();
    }
    return sum;
}
} // namespace

void measureIdle(qint64 processId)
{
    const QString process = QStringLiteral("/proc/%1").arg(processId);
    const double before = processorTime(process);
    const double start = nowMicroseconds();
    QThread::sleep(Seconds);
    const double share = (processorTime(process) - before) / 1000 / (nowMicroseconds() - start);
    std::printf("%-46s %10.2f %% of a core (aim 0.50)\n", "idle process over 30 s", 100 * share);
    std::printf("%-46s %10.1f MiB, %.1f of them its own\n", "resident memory", memoryOf(processId, "VmRSS:"),
                memoryOf(processId, "RssAnon:"));
}
