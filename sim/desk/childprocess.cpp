#include "childprocess.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

namespace
{
constexpr int upMs = 10000;

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

QString ChildProcess::launch(const QString &program, const QStringList &arguments)
{
    start(program, arguments);
    if (!waitForStarted()) {
        return QString("cannot start %1: %2").arg(program, errorString());
    }
    m_pid = processId();
    return {};
}

QString ChildProcess::bringUp(const ServerPart &server, const QStringList &arguments, const QString &log)
{
    setStandardErrorFile(log, QIODevice::Append);
    QString error = launch(server.program, arguments);
    if (error.isEmpty() && !waitForReadyRead(upMs)) {
        stop();
        error = QString("%1 did not come up, see %2").arg(server.program, log);
    }
    return error.isEmpty() ? error : QString("%1 (Debian package %2)").arg(error, server.package);
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
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void ChildProcess::onFinished()
{
    const qint64 pid = std::exchange(m_pid, 0);
    if (pid != 0) {
        signalGroup(pid, SIGKILL);
        emit ended();
    }
}
