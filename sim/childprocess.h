#pragma once

#include <QProcess>

/// A process of its own group that never outlives this one, however that ends. For the thread that makes it.
class ChildProcess : public QProcess
{
    Q_OBJECT

public:
    explicit ChildProcess(QObject *parent = nullptr);

    /// As stop(); too late for a derived class that listens to the process.
    ~ChildProcess() override;

    /// Starts the program, looked up in the PATH when it has no folder. Returns an empty text, or one line
    /// that says why not.
    QString launch(const QString &program, const QStringList &arguments);

    /// Ends the process and what it has started: asks, and after 5 s insists. Blocks until they have gone.
    void stop();

signals:
    /// It has ended by itself, and what it had started was killed.
    void ended();

protected:
    void setupChildProcess() override;

private:
    void onFinished();

    qint64 m_pid = 0; ///< 0 when there is none, or it is being stopped
};
