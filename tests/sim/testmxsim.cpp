#include "testregistry.h"
#include "testunit.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTest>
#include <QUdpSocket>
#include <csignal>

namespace
{
constexpr int deadlineMs = 20000;
const QRegularExpression
    switched("\n\\d\\d:\\d\\d:\\d\\d\\.\\d{3} switch   input 3 on outputs 1, 4; outputs 2-3 dark\n$");

/// Comes up, shows who it is and what it was told, uses the board once, and stays until it is asked to end.
const QByteArray program = R"(
    trap 'kill -9 $!; echo asked to end; exit' TERM
    echo $$ $MX_TCP_PORT $MX_UDP_PORT $QT_QPA_PLATFORM $LD_PRELOAD
    for copy in 1 2; do printf 'F00C00000002FFFFFFFF0002\r\n'; done > $MX_ROOT/dev/ttymxc2
    printf 'starting\rt0 2026-01-01 00:00:00\n'
    cat <> $MX_ROOT/dev/gpiodev &
    wait)";

QString content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QString();
}

} // namespace

/// mxsim as a process, with a script in place of the control program.
class TestMxsim : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_tcpPort = freeTcpPort();
        m_udpPort = freeUdpPorts();
        writeScript(program);
    }

    void badOptions()
    {
        using Case = std::pair<QStringList, QString>;
        for (const auto &[arguments, error] :
             {Case({"--ports", "1"}, "--ports takes a number from 2 to 160, not \"1\""),
              Case({"--ports", "161"}, "--ports takes a number from 2 to 160, not \"161\""),
              Case({"--scenes", "10x"}, "--scenes takes a number from 10 to 40, not \"10x\""),
              Case({"--speed"}, "Unknown option 'speed'."), Case({"8"}, "\"8\" is no option; see --help"),
              Case({"--folder", "/dev/null"}, "cannot use the folder /dev/null: Not a directory"),
              Case({"--program", "/etc/passwd"}, "there is no program /etc/passwd")}) {
            QCOMPARE(failure(arguments), "mxsim: " + error + "\n");
        }
        QVERIFY(!QFile::exists(file("unit")));
    }

    void takenPorts()
    {
        const QString error("mxsim: %1 port %2 cannot be had: The bound address is already in use\n");
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, m_tcpPort));
        QCOMPARE(failure(), error.arg("TCP").arg(m_tcpPort));
        server.close();
        QUdpSocket socket;
        QVERIFY(socket.bind(QHostAddress(QHostAddress::AnyIPv4), static_cast<quint16>(m_udpPort + 7)));
        QCOMPARE(failure(), error.arg("UDP").arg(m_udpPort + 7));
        QVERIFY(!QFile::exists(file("unit/mxcontrol.log")));
    }

    void programThatEnds()
    {
        for (const auto &[text, error] :
             {std::pair("exit 3", "with code 3; it printed nothing"),
              {"echo one; printf 'two\\rthree' >&2", "with code 0; its last output was \"three\""},
              {"kill -SEGV $$", "after a crash; it printed nothing"}}) {
            writeScript(text);
            QCOMPARE(failure(), QString("mxsim: the program ended by itself, %1\n").arg(error));
        }
    }

    void showsWhatHappens()
    {
        QProcess mxsim;
        const QString screen = start(mxsim, {"--ports", "4"});
        for (const QString &word :
             {QString::number(m_tcpPort), QString::number(m_udpPort), QString::number(m_udpPort + 7),
              QString(" unit/serial1\n"), QString(" unit/serial2\n"), QString(" unit/mxcontrol.log\n")}) {
            QVERIFY2(screen.contains(word), qPrintable(word + " is missing in:\n" + screen));
        }
        QVERIFY2(screen.contains(switched), qPrintable(screen));
        QCOMPARE(log().section(' ', 1, 3), QString("%1 %2 offscreen").arg(m_tcpPort).arg(m_udpPort));
        const QString library = QCoreApplication::applicationDirPath() + "/../lib/libmxioctl.so";
        QCOMPARE(log().section(' ', 4), QDir::cleanPath(library) + "\nstarting\rt0 2026-01-01 00:00:00\n");

        QCOMPARE(failure(), QString("mxsim: the folder %1 is in use by another mxsim\n").arg(file("unit")));
        QVERIFY(QFile::exists(file("unit/serial1")));
        mxsim.terminate();
        QVERIFY(mxsim.waitForFinished(deadlineMs));
    }

    void leavesNothingRunning()
    {
        for (const int signal : {SIGKILL, SIGINT, SIGTERM}) {
            // What was killed leaves its devices behind. The size stays in the settings: a board of another
            // size would not understand the frame.
            QProcess mxsim;
            const QStringList size = signal == SIGKILL ? QStringList({"--ports", "4"}) : QStringList();
            QVERIFY(start(mxsim, size).contains(switched));
            // Empty once the process has ended, even if whoever adopted it has not taken notice yet.
            const QString commandLine = "/proc/" + log().section(' ', 0, 0) + "/cmdline";
            QVERIFY(!content(commandLine).isEmpty());
            kill(static_cast<pid_t>(mxsim.processId()), signal);
            QVERIFY(mxsim.waitForFinished(deadlineMs));
            if (signal == SIGKILL) {
                QVERIFY(runUntil([&] { return content(commandLine).isEmpty(); }));
                continue;
            }
            QVERIFY(content(commandLine).isEmpty());
            QCOMPARE(mxsim.exitStatus(), QProcess::NormalExit);
            QCOMPARE(mxsim.exitCode(), 0);
            QCOMPARE(mxsim.readAllStandardError(), QByteArray());
            QVERIFY(log().endsWith("\nasked to end\n"));
            QVERIFY(QDir(file("unit/dev")).entryList(QDir::System | QDir::Files).isEmpty());
            QVERIFY(!QFileInfo(file("unit/serial1")).isSymLink());
        }
    }

private:
    QString file(const QString &name) const { return m_folder->filePath(name); }

    void writeScript(const QByteArray &text) const
    {
        QFile script(file("script"));
        script.open(QIODevice::WriteOnly);
        script.write("#!/bin/sh\n" + text + "\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// In the test's folder as the current one, so that the unit is in "unit" there; later options win.
    /// Returns the output up to the first event on the board.
    QString start(QProcess &mxsim, const QStringList &arguments = {}) const
    {
        mxsim.setWorkingDirectory(m_folder->path());
        mxsim.start(
            QCoreApplication::applicationDirPath() + "/mxsim",
            QString("--tcp-port=%1 --udp-port=%2 --program=script").arg(m_tcpPort).arg(m_udpPort).split(' ') +
                arguments);
        QString output;
        while (!output.contains("dark\n") && mxsim.waitForReadyRead(deadlineMs)) {
            output += mxsim.readAllStandardOutput();
        }
        return output;
    }

    /// Runs it to its end, which must be a failure without output, and returns what it says of that.
    QString failure(const QStringList &arguments = {}) const
    {
        QProcess mxsim;
        const QString output = start(mxsim, arguments);
        mxsim.waitForFinished(deadlineMs);
        return (mxsim.exitCode() == 1 ? output : "another exit code: ") + mxsim.readAllStandardError();
    }

    /// What the program has printed: its process, the ports, the platform, the preloaded libraries, and more.
    QString log() const { return content(file("unit/mxcontrol.log")); }

    std::unique_ptr<QTemporaryDir> m_folder;
    quint16 m_tcpPort = 0;
    quint16 m_udpPort = 0;
};

static const RegisteredTest<TestMxsim> registered;

#include "testmxsim.moc"
