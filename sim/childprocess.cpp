#include "childprocess.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

namespace
{
constexpr int stopMs = 5000;

void signalGroup(qint64 pid, int signal)
{
    ::kill(-static_cast<pid_t>(pid), signal);
}
} // namespace

ChildProcess::ChildProcess(QObject *parent)
    : QProcess(parent)
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

void ChildProcess::stop()
{
    const qint64 pid = std::exchange(m_pid, 0);
    if (pid == 0) {
        return;
    }
    signalGroup(pid, SIGTERM);
    waitForFinished(stopMs);
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
