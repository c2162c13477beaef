#include "stuckthread.h"

#include <QDir>
#include <QFile>
#include <sys/ptrace.h>
#include <sys/wait.h>

namespace
{
/// 0 when there is none.
pid_t findThread(qint64 process, const QByteArray &name)
{
    const QDir threads(QStringLiteral("/proc/%1/task").arg(process));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread + QLatin1String("/comm")));
        if (file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == name) {
            return thread.toInt();
        }
    }
    return 0;
}
} // namespace

StuckThread::StuckThread(qint64 process, const QByteArray &thread)
{
    const pid_t found = findThread(process, thread);
    if (found > 0 && ::ptrace(PTRACE_SEIZE, found, nullptr, nullptr) == 0 &&
        ::ptrace(PTRACE_INTERRUPT, found, nullptr, nullptr) == 0 &&
        ::waitpid(found, nullptr, __WALL) == found) {
        m_thread = found;
    }
}

StuckThread::~StuckThread()
{
    ::ptrace(PTRACE_DETACH, m_thread, nullptr, nullptr);
}
