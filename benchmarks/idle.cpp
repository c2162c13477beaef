#include "samples.h"
#include "wires.h"

#include <QDir>
#include <QFile>
#include <QThread>
#include <cstdio>

namespace
{
constexpr unsigned long Seconds = 30;

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Time on a processor of all threads, in nanoseconds.
double processorTime(const QString &process)
{
    double sum = 0;
    const QDir tasks(process + QLatin1String("/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        sum += content(tasks.filePath(task) + QLatin1String("/schedstat")).split(' ').at(0).toDouble();
    }
    return sum;
}

double mebibytes(const QByteArray &status, const char *name)
{
    const int at = status.indexOf(name);
    return at < 0 ? 0 : status.mid(at + int(qstrlen(name)), 40).trimmed().split(' ').at(0).toDouble() / 1024;
}
} // namespace

void measureIdle(qint64 processId)
{
    const QString process = QStringLiteral("/proc/%1").arg(processId);
    QThread::sleep(2);
    const double before = processorTime(process);
    const double start = nowMicroseconds();
    QThread::sleep(Seconds);
    const double share = (processorTime(process) - before) / 1000 / (nowMicroseconds() - start);
    const QByteArray status = content(process + QLatin1String("/status"));
    std::printf("%-46s %10.2f %% of a core (aim 0.50)\n", "idle process over 30 s", 100 * share);
    std::printf("%-46s %10.1f MiB, %.1f of them its own\n", "resident memory", mebibytes(status, "VmRSS:"),
                mebibytes(status, "RssAnon:"));
}
