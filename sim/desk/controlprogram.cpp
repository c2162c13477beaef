#include "controlprogram.h"

namespace sim
{
namespace
{
constexpr int StartMs = 10000;
constexpr char ReadyMark[] = "t0 ";
} // namespace

ControlProgram::ControlProgram(QObject *parent)
    : ChildProcess(parent)
{
    setProcessChannelMode(MergedChannels);
    m_startTimer.setSingleShot(true);
    connect(&m_startTimer, &QTimer::timeout, this,
            [this] { emit failed("the program did not come up within 10 s; " + lastOutput()); });
    connect(this, &QProcess::started, this, [this] { m_startTimer.start(StartMs); });
    connect(this, &QProcess::readyRead, this, &ControlProgram::readOutput);
    connect(this, &ChildProcess::ended, this, &ControlProgram::onEnded);
}

ControlProgram::~ControlProgram()
{
    m_startTimer.stop();
    stop();
}

Result ControlProgram::openLog(const QString &path)
{
    m_log.setFileName(path);
    if (!m_log.open(QIODevice::WriteOnly)) {
        return {QString("cannot write %1: %2").arg(path, m_log.errorString())};
    }
    return {};
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
        if (m_startTimer.isActive() && message.startsWith(ReadyMark)) {
            m_startTimer.stop();
            emit up();
        }
    }
}

void ControlProgram::onEnded()
{
    readOutput();
    if (bytesAvailable() > 0) {
        takeLine(readAll());
    }
    m_startTimer.stop();
    const QString how =
        exitStatus() == CrashExit ? QString("after a crash") : QString("with code %1").arg(exitCode());
    emit failed(QString("the program ended by itself, %1; %2").arg(how, lastOutput()));
}

QString ControlProgram::lastOutput() const
{
    if (m_lastMessage.isEmpty()) {
        return "it printed nothing";
    }
    return QString("its last output was \"%1\"").arg(QString::fromLocal8Bit(m_lastMessage));
}
} // namespace sim
