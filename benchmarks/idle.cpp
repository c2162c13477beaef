#include "processinfo.h"
#include "samples.h"
#include "wires.h"

#include <QDir>
#include <QProcess>
#include <QThread>
#include <cstdio>

namespace
{
constexpr unsigned long Seconds = 30;

/// Time on a processor of all threads, in nanoseconds.
double processorTime(qint64 processId)
{
    double sum = 0;
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(processId));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        sum += procFile(tasks.filePath(task) + QLatin1String("/schedstat")).split(' ').at(0).toDouble();
    }
    return sum;
}
} // namespace

void measureIdle(qint64 processId, Operation operation)
{
    const bool hasPanel = operation == Operation::FrontPanel;
    QProcess bareProgram;
    bareProgram.start(QStringLiteral(BARE_PROGRAM),
                      {hasPanel ? QStringLiteral("panel") : QStringLiteral("touchscreen")});
    bareProgram.waitForStarted();
    QThread::sleep(1);
    const double productBefore = processorTime(processId);
    const double bareBefore = processorTime(bareProgram.processId());
    const double start = nowMicroseconds();
    QThread::sleep(Seconds);
    const double onePercent = (nowMicroseconds() - start) * 1000 / 100;
    const double product = (processorTime(processId) - productBefore) / onePercent;
    const double bare = (processorTime(bareProgram.processId()) - bareBefore) / onePercent;
    bareProgram.terminate();
    bareProgram.waitForFinished();
    std::printf("%-46s %10.2f %% of a core, bare C program that sleeps 10 ms a pass %.2f %%: %.2f times (at "
                "most %.1f)\n",
                hasPanel ? "idle process with front panel" : "idle process with touchscreen", product, bare,
                product / bare, hasPanel ? 1.0 : 1.1);
    std::printf("%-46s %10.1f MiB, %.1f of them its own\n", "resident memory", memoryOf(processId, "VmRSS:"),
                memoryOf(processId, "RssAnon:"));
}
