#pragma once

#include <QByteArray>
#include <QProcess>

/// The program as a process of its own, on the virtual unit that `TestUnit` has made.
class Product
{
public:
    /// Starts it on one of Qt's platforms; with `awaitStart` returns when it serves its wires. What it prints
    /// goes into the file `output` if there is one, and is then not to be awaited. `option` is its command
    /// line.
    explicit Product(bool awaitStart = true, const QString &platform = QStringLiteral("offscreen"),
                     const QString &output = QString(), const QByteArray &option = QByteArray());
    /// Kills it if it still runs.
    ~Product();

    /// Waits until it has printed this, or has ended. \return whether it has
    bool await(const QByteArray &text);

    /// Sends the signal and waits for the end. \return the exit code, -1 when it did not end properly
    int end(int signal);
    /// Waits for the end. \return as `end`
    int finish();

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    qint64 processId() const { return m_process.processId(); }
    QByteArray output() const { return m_output; }
    QByteArray errors() { return m_process.readAllStandardError(); }

private:
    QProcess m_process;
    QByteArray m_output;
};
