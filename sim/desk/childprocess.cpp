#include "childprocess.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

namespace sim
{
namespace
{
constexpr int UpMs = 10000;

void signalGroup(qint64 pid, int signal)
{
    ::kill(-static_cast<pid_t>(pid), signal);
}
} // namespace

ChildProcess::ChildProcess(QObject *parent, int stopMs)
    : QProcess(parent)
    , m_stopMs(stopMs)
{
    setStandardInputFile(nullDevice());
    connect(this, static_cast<void (QProcess::*)(int, ExitStatus)>(&QProcess::finished), this,
            &ChildProcess::onFinished);
}

ChildProcess::~ChildProcess()
{
    stop();
}

Result ChildProcess::launch(const QString &program, const QStringList &arguments)
{
    start(program, arguments);
    if (!waitForStarted()) {
        return {QString("cannot start %1: %2").arg(program, errorString())};
    }
    m_pid = processId();
    return {};
}

Result ChildProcess::bringUp(const ServerPart &server, const QStringList &arguments, const QString &log)
{
    setStandardErrorFile(log, QIODevice::Append);
    Result result = launch(server.program, arguments);
    if (result.isDone() && !waitForReadyRead(UpMs)) {
        stop();
        result.failure = QString("%1 did not come up, see %2").arg(server.program, log);
    }
    if (!result.isDone()) {
        result.failure += QString(" (Debian package %1)").arg(server.package);
    }
    return result;
}

void ChildProcess::stop()
{
    const qint64 pid = std::exchange(m_pid, 0);
    if (pid == 0) {
        return;
    }
    signalGroup(pid, SIGTERM);
    waitForFinished(m_stopMs);
    signalGroup(pid, SIGKILL);
    waitForFinished();
}

/// Runs in the child, between fork and exec.
void ChildProcess::setupChildProcess()
{
    // Ctrl-C on the terminal is for mxsim, which then ends its children in order.
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, m_orphanSignal);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

void ChildProcess::onFinished()
{
    const qint64 pid = std::exchange(m_pid, 0);
    if (pid != 0) {
        signalGroup(pid, SIGKILL);
        emit ended();
    }
}
} // namespace sim
