#include "product.h"

#include "testunit.h"

#include <QFileInfo>
#include <csignal>

constexpr int DeadlineMs = 20000;

Product::Product(bool awaitStart, const QString &platform, const QString &output, const QByteArray &option)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Behind what a test has chosen for it.
    const QString preload = environment.value(QStringLiteral("LD_PRELOAD"));
    environment.insert(QStringLiteral("LD_PRELOAD"), preload + QStringLiteral(" " INTERPOSER));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    environment.remove(QStringLiteral("QT_NO_GLIB")); // it chooses its event loop itself
    // What a frame buffer's platform does besides to the machine that runs it.
    environment.insert(QStringLiteral("QT_QPA_FB_DISABLE_INPUT"), QStringLiteral("1"));
    environment.insert(QStringLiteral("QT_QPA_FB_HIDECURSOR"), QStringLiteral("1"));
    environment.insert(QStringLiteral("QT_QPA_PRESERVE_CONSOLE_STATE"), QStringLiteral("1"));
    m_process.setProcessEnvironment(environment);
    // Its pictures are beside the folder that the program is in.
    m_process.setWorkingDirectory(QFileInfo(QStringLiteral(PRODUCT)).path() + QLatin1String("/.."));
    m_process.setStandardOutputFile(output);
    const QStringList arguments(QString::fromLatin1(option));
    m_process.start(QStringLiteral(PRODUCT), option.isEmpty() ? QStringList() : arguments);
    if (awaitStart) {
        await("t0 ");
    }
}

Product::~Product()
{
    m_process.kill();
    m_process.waitForFinished(DeadlineMs);
}

bool Product::await(const QByteArray &text)
{
    runUntil([&] {
        const bool runs = isRunning();
        m_output += m_process.readAllStandardOutput();
        return m_output.contains(text) || !runs;
    });
    return m_output.contains(text);
}

int Product::end(int signal)
{
    ::kill(static_cast<pid_t>(m_process.processId()), signal);
    return finish();
}

int Product::finish()
{
    const bool ended = m_process.waitForFinished(DeadlineMs);
    m_output += m_process.readAllStandardOutput();
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}
