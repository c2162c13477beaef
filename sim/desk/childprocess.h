#pragma once

#include "result.h"

#include <QProcess>
#include <csignal>

namespace sim
{
/// A program that says on its output that it is up, and then no more.
struct ServerPart {
    const char *program;
    const char *package; ///< Debian's
};

/// A process of its own group that never outlives this one, however that ends. For the thread that makes it.
class ChildProcess : public QProcess
{
    Q_OBJECT

public:
    /// `stopMs` is how long stop() waits before it insists.
    explicit ChildProcess(QObject *parent = nullptr, int stopMs = 5000);

    /// As stop(); too late for a derived class that listens to the process.
    ~ChildProcess() override;

    /// What the process gets when this one is killed and cannot end it. Before it is launched.
    void setOrphanSignal(int signal) { m_orphanSignal = signal; }

    /// Starts the program, looked up in the PATH when it has no folder.
    Result launch(const QString &program, const QStringList &arguments);

    /// As launch(), with its messages added to the log file, and waits until it is up, at most 10 s.
    Result bringUp(const ServerPart &server, const QStringList &arguments, const QString &log);

    /// Ends the process and what it has started: asks, and later insists. Blocks until they have gone.
    void stop();

signals:
    /// It has ended by itself, and what it had started was killed.
    void ended();

protected:
    void setupChildProcess() override;

private:
    void onFinished();

    const int m_stopMs;
    int m_orphanSignal = SIGTERM;
    qint64 m_pid = 0; ///< 0 when there is none, or it is being stopped
};
} // namespace sim
