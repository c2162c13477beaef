#pragma once

#include "childprocess.h"

#include <QFile>
#include <QTimer>

namespace sim
{
/// The control program, its output in a log file. For the thread that makes it.
class ControlProgram : public ChildProcess
{
    Q_OBJECT

public:
    explicit ControlProgram(QObject *parent = nullptr);

    /// As stop().
    ~ControlProgram() override;

    /// Has the program's output overwrite this file. To be called before launch(); signals tell what comes
    /// after that.
    Result openLog(const QString &path);

signals:
    /// It has said that it is ready.
    void up();

    /// It has ended by itself, or is not up after 10 s; `reason` is one line that quotes its last output.
    void failed(const QString &reason);

private:
    void readOutput();
    void takeLine(const QByteArray &line);
    void onEnded();
    QString lastOutput() const;

    QFile m_log;
    QByteArray m_lastMessage;
    QTimer m_startTimer; ///< runs until the program is up
};
} // namespace sim
