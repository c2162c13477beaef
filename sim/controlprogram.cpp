#include "controlprogram.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace
{
constexpr int startMs = 10000;
constexpr int stopMs = 5000;
constexpr char readyMark[] = "t0 ";
} // namespace

ControlProgram::ControlProgram(QObject *parent)
    : QProcess(parent)
{
    setProcessChannelMode(MergedChannels);
    setStandardInputFile(nullDevice());
    m_startTimer.setSingleShot(true);
    connect(&m_startTimer, &QTimer::timeout, this,
            [this] { emit failed("the program did not come up within 10 s; " + lastOutput()); });
    connect(this, &QProcess::readyRead, this, &ControlProgram::readOutput);
    connect(this, static_cast<void (QProcess::*)(int, ExitStatus)>(&QProcess::finished), this,
            &ControlProgram::onFinished);
}

ControlProgram::~ControlProgram()
{
    stop();
}

QString ControlProgram::launch(const QString &program, const QProcessEnvironment &environment,
                               const QString &log)
{
    m_log.setFileName(log);
    if (!m_log.open(QIODevice::WriteOnly)) {
        return QString("cannot write %1: %2").arg(log, m_log.errorString());
    }
    setProcessEnvironment(environment);
    start(program, QStringList());
    if (!waitForStarted()) {
        return QString("cannot start %1: %2").arg(program, errorString());
    }
    m_pid = processId();
    m_startTimer.start(startMs);
    return {};
}

void ControlProgram::stop()
{
    m_startTimer.stop();
    if (m_pid == 0) {
        return;
    }
    disconnect(this, static_cast<void (QProcess::*)(int, ExitStatus)>(&QProcess::finished), this, nullptr);
    signalGroup(SIGTERM);
    waitForFinished(stopMs);
    signalGroup(SIGKILL);
    waitForFinished();
    m_pid = 0;
}

/// Runs in the child, between fork and exec.
void ControlProgram::setupChildProcess()
{
    // Ctrl-C on the terminal is for mxsim, which then ends the program in order.
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void ControlProgram::readOutput()
{
    while (canReadLine()) {
        takeLine(readLine());
    }
}

void ControlProgram::takeLine(const QByteArray &line)
{
    m_log.write(line);
    m_log.flush();
    // Some of the program's messages end in a carriage return alone.
    for (const QByteArray &message : line.trimmed().split('\r')) {
        if (!message.isEmpty()) {
            m_lastMessage = message;
        }
        if (m_startTimer.isActive() && message.startsWith(readyMark)) {
            m_startTimer.stop();
            emit up();
        }
    }
}

void ControlProgram::onFinished(int code, ExitStatus status)
{
    readOutput();
    if (bytesAvailable() > 0) {
        takeLine(readAll());
    }
    signalGroup(SIGKILL);
    m_startTimer.stop();
    m_pid = 0;
    const QString how = status == CrashExit ? QString("after a crash") : QString("with code %1").arg(code);
    emit failed(QString("the program ended by itself, %1; %2").arg(how, lastOutput()));
}

void ControlProgram::signalGroup(int signal) const
{
    ::kill(-static_cast<pid_t>(m_pid), signal);
}

QString ControlProgram::lastOutput() const
{
    if (m_lastMessage.isEmpty()) {
        return "it printed nothing";
    }
    return QString("its last output was \"%1\"").arg(QString::fromLocal8Bit(m_lastMessage));
}
