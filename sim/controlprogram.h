#pragma once

#include <QFile>
#include <QProcess>
#include <QTimer>

/// The control program as a process of its own group, its output in a log file. It never outlives this
/// process, however that ends. For the thread that makes it.
class ControlProgram : public QProcess
{
    Q_OBJECT

public:
    explicit ControlProgram(QObject *parent = nullptr);

    /// As stop().
    ~ControlProgram() override;

    /// Starts the program, whose output overwrites the log. Returns an empty text, or one line that says why
    /// not; signals tell the rest.
    QString launch(const QString &program, const QProcessEnvironment &environment, const QString &log);

    /// Ends the program and what it has started: asks, and after 5 s insists. Blocks until they have gone.
    void stop();

signals:
    /// It has said that it is ready.
    void up();

    /// It has ended by itself, or is not up after 10 s; `reason` is one line that quotes its last output.
    void failed(const QString &reason);

protected:
    void setupChildProcess() override;

private:
    void readOutput();
    void takeLine(const QByteArray &line);
    void onFinished(int code, ExitStatus status);
    void signalGroup(int signal) const;
    QString lastOutput() const;

    QFile m_log;
    QByteArray m_lastMessage;
    QTimer m_startTimer; ///< runs until the program is up
    qint64 m_pid = 0;
};
