#include "lcdrecords.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocalSocket>
#include <QNetworkInterface>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>
#include <algorithm>
#include <csignal>
#include <memory>
#include <utility>

namespace
{
constexpr int deadlineMs = 20000;
const QRegularExpression
    switched("\n\\d\\d:\\d\\d:\\d\\d\\.\\d{3} switch   input 3 on outputs 1, 4; outputs 2-3 dark\n$");

/// Comes up, shows who it is and what it was told, uses the board once, and stays until it is asked to end.
const QByteArray program = R"(
    trap 'kill -9 $!; [ -e /tmp/.X11-unix/X${DISPLAY#:} ] && echo has its display; echo asked to end; exit' TERM
    echo $$ $MX_TCP_PORT $MX_UDP_PORT $QT_QPA_PLATFORM $DISPLAY $XAUTHORITY
    frame='F00C00000002FFFFFFFF0002\r\n'
    printf $frame$frame > $MX_ROOT/dev/ttymxc2 # at once: for the second copy the board waits 100 ms
    printf 'starting\rt0 2026-01-01 00:00:00\n'
    sleep 600 &
    wait)";

/// With a line for each of the texts that a file of the kernel ends with a zero.
QString content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().replace('\0', '\n') : QString();
}

/// The processes that it has started and that are there, each before those that it has started in turn.
QStringList startedBy(const QString &process)
{
    QStringList all;
    QStringList children = content(QString("/proc/%1/task/%1/children").arg(process)).split(' ');
    children.removeLast(); // a space ends each of them
    for (const QString &child : std::as_const(children)) {
        all += QStringList(child) + startedBy(child);
    }
    return all;
}

/// What the process was started with; empty once it has ended, even if whoever adopted it has not noticed
/// yet.
QString commandLine(const QString &process)
{
    return content("/proc/" + process + "/cmdline");
}

bool ended(QProcess &mxsim)
{
    mxsim.terminate();
    return mxsim.waitForFinished(deadlineMs);
}

} // namespace

/// mxsim as a process, with a script in place of the control program.
class TestMxsim : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_mxsim = QCoreApplication::applicationDirPath() + "/mxsim";
        m_program = QStringList("--program=bin/script");
        m_folder = std::make_unique<QTemporaryDir>();
        m_tcpPort = freeTcpPort();
        m_udpPort = freeUdpPorts();
        m_environment = QProcessEnvironment::systemEnvironment();
        for (const char *unwanted : {"FONTCONFIG_FILE", "DISPLAY", "QT_NO_GLIB", "QT_QPA_PLATFORM"}) {
            m_environment.remove(unwanted);
        }
        QVERIFY(QDir(m_folder->path()).mkdir("bin"));
        writeScript(program);
    }

    void failures_data()
    {
        columns<QByteArray, QByteArray, QByteArray>("options", "script", "error");
        const auto refused = [](const char *options, const char *error) { row(options, options, "", error); };
        refused("--ports 1", "--ports takes a number from 2 to 160, not \"1\"");
        refused("--screen tv", "--screen takes window, vnc or none, not \"tv\"");
        refused("--touchscreen --front-panel", "--touchscreen and --front-panel are not for one unit");
        refused("8", "\"8\" is no option; see --help");
        refused("--folder /dev/null", "cannot use the folder /dev/null: Not a directory");
        refused("--program /etc/passwd", "there is no program /etc/passwd");
        refused("--screen=window", "there is no desk at the display \":none\"");
        refused("--front-panel --ports=41 --folder=.", "the front panel is for at most 40 ports");
        // It lives for a moment: until the process waits for events, the thread sanitizer puts off its
        // signals, and now and then loses the one that a child has ended.
        const auto ends = [](const char *script, const QByteArray &error) {
            row(script, "--ports=4 --screen=none", QByteArray("/bin/sleep 0.5; ") + script,
                "the program ended by itself, " + error);
        };
        ends("exit 3", "with code 3; it printed nothing");
        ends("echo one; printf 'two\\rthree' >&2", "with code 0; its last output was \"three\"");
        ends("kill -SEGV $$", "after a crash; it printed nothing");
        row("no server", "--screen=vnc", ":",
            "cannot start Xvfb: execvp: No such file or directory (Debian package xvfb)");
    }
    void failures()
    {
        QFETCH(QByteArray, options);
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, error);
        m_environment.insert("DISPLAY", ":none");
        writeScript(script);
        m_environment.insert("PATH", file("bin"));
        QCOMPARE(failure(QString(options).split(' ')), QString("mxsim: %1\n").arg(QString(error)));
        QCOMPARE(QFile::exists(file("unit")), !script.isEmpty());
    }

    void takenPorts()
    {
        const QString error("mxsim: %1 port %2 cannot be had: The bound address is already in use\n");
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, m_tcpPort));
        QCOMPARE(failure(), error.arg("TCP").arg(m_tcpPort));
        const quint16 taken = std::exchange(m_tcpPort, freeTcpPort());
        QCOMPARE(failure({"--screen=vnc", "--vnc-port", QString::number(taken)}),
                 error.arg("TCP").arg(taken));
        QUdpSocket socket;
        QVERIFY(socket.bind(QHostAddress(QHostAddress::AnyIPv4), static_cast<quint16>(m_udpPort + 7)));
        QCOMPARE(failure(), error.arg("UDP").arg(m_udpPort + 7));
        QVERIFY(!QFile::exists(file("unit/mxcontrol.log")));
    }

    void showsWhatHappens()
    {
        QProcess mxsim;
        const QString screen = start(mxsim, {"--ports=4", "--screen=none"});
        for (const QString &word :
             {QString::number(m_tcpPort), QString::number(m_udpPort), QString::number(m_udpPort + 7),
              QString(" unit/serial1\n"), QString(" unit/serial2\n"), QString(" unit/mxcontrol.log\n")}) {
            QVERIFY2(screen.contains(word), qPrintable(word + " is missing in:\n" + screen));
        }
        QVERIFY2(screen.contains(switched), qPrintable(screen));
        QCOMPARE(log().section('\n', 0, 0).section(' ', 1, 3),
                 QString("%1 %2 offscreen").arg(m_tcpPort).arg(m_udpPort));
        QCOMPARE(failure(), QString("mxsim: the folder %1 is in use by another mxsim\n").arg(file("unit")));
        QVERIFY(ended(mxsim));
    }

    /// Into another folder than the build was made for: the real program, with all that it is lent.
    void installed()
    {
        QProcess cmake;
        cmake.start(CMAKE, {"--install", BUILD_FOLDER, "--prefix", file("moved")});
        QVERIFY(cmake.waitForFinished(deadlineMs) && cmake.exitCode() == 0);
        m_mxsim = file("moved/bin/mxsim");
        m_program = QStringList();
        QProcess mxsim;
        const QString output = start(mxsim, {"--screen=none"}, QRegularExpression("The unit is up"));
        QVERIFY2(output.contains("The unit is up"), qPrintable(output + mxsim.readAllStandardError()));

        const QString program = "/proc/" + startedBy(QString::number(mxsim.processId())).value(0);
        QCOMPARE(QFileInfo(program + "/exe").symLinkTarget(), file("moved/sbin/mxcontrol"));
        for (const char *picture : {"images/default/startup.png", "help/en/1.png"}) {
            QVERIFY2(QFile::exists(program + "/cwd/" + picture), picture);
        }
        for (const char *lent : {"LD_PRELOAD", "FONTCONFIG_FILE"}) {
            const QRegularExpression variable(QString("\n%1=([^:\n]+)").arg(lent));
            const QString path = variable.match(content(program + "/environ")).captured(1);
            QVERIFY2(path.startsWith(file("moved/")) && QFile::exists(path), qPrintable(path));
        }
        QVERIFY(ended(mxsim));
    }

    void touchscreenOrFrontPanel()
    {
        const QString panel = "linuxfb:fb=" + file("unit") + "/dev/fb0:tty=/dev/null:nographicsmodeswitch";
        // Each as the last left the unit: the setting afterwards, the program's platform, and the arguments.
        for (const QStringList &each : {QStringList{"", "offscreen", "--ports=4"},
                                        {"1", panel, "--front-panel"},
                                        {"1", panel},
                                        {"1", "offscreen", "--ports=64"},
                                        {"0", "offscreen", "--touchscreen", "--ports=4"}}) {
            QProcess mxsim;
            start(mxsim, QStringList("--screen=none") + each.mid(2), QRegularExpression("The unit is up"));
            const QRegularExpression setting("\nkeypad=(.*)\n");
            QCOMPARE(setting.match(content(file("unit/home/app/config/setup.ini"))).captured(1), each.at(0));
            QCOMPARE(logWord(3), each.at(1));
            QVERIFY(ended(mxsim));
        }
        QCOMPARE(
            failure({"--front-panel", "--folder=a:b"}),
            QString("mxsim: a unit with a front panel cannot be in %1, since there is a colon in the path\n")
                .arg(file("a:b")));
    }

    void printsTheLcd()
    {
        writeFile("bin/reset", lcdRecord(1, {}));
        writeFile("bin/lcd", lcdOn() + lcdCorner(0xF0));
        writeScript("(cd bin; cat reset >$MX_ROOT/dev/gpiodev; cat lcd >$MX_ROOT/dev/spidev2.0)" + program);
        QProcess mxsim;
        const QString output =
            start(mxsim, {"--front-panel", "--ports=4", "--screen=none", "--lcd"}, QRegularExpression("┘\n"));
        const QRegularExpression picture(
            "\n┌─{128}┐\n│[▀█]{4}[ ▄]{4}[^\n]{120}│\n(│[^\n]{128}│\n){31}└─{128}┘\n$");
        QVERIFY2(output.contains(picture), qPrintable(output));
        QVERIFY(output.contains("\n  panel       none\n") && output.contains("▄")); // of the noise
        QVERIFY(ended(mxsim));
    }

    void screenForVncViewersAndNothingLeftRunning()
    {
        QTcpServer other;
        other.listen(QHostAddress::LocalHost, 5900);
        for (const int signal : {SIGKILL, SIGINT, SIGTERM}) {
            // The size stays in the settings: a board of another size would not understand the frame.
            QProcess mxsim;
            const QString text = start(mxsim, signal == SIGKILL ? QStringList("--ports=4") : QStringList());
            QVERIFY2(text.contains(switched),
                     qPrintable(text + mxsim.readAllStandardError() + content(file("unit/desk.log"))));
            const auto address = QRegularExpression("\n  screen      vnc://127.0.0.1:(\\d+),").match(text);
            const auto port = static_cast<quint16>(address.captured(1).toInt());
            QVERIFY(port > 5900 || !other.isListening());
            for (const QHostAddress &local : QNetworkInterface::allAddresses()) {
                QTcpSocket viewer;
                viewer.connectToHost(local, port);
                viewer.waitForReadyRead(deadlineMs);
                QCOMPARE(viewer.read(7), QByteArray(local == QHostAddress::LocalHost ? "RFB 003" : ""));
            }

            QCOMPARE(logWord(3), QString("xcb"));
            const QFile deskCookie(file("unit/desk.cookie"));
            for (const QString &cookie : {logWord(5), deskCookie.fileName()}) {
                QVERIFY(QFile::exists(cookie));
                QVERIFY(!(QFile::permissions(cookie) & (QFile::ReadGroup | QFile::ReadOther)));
            }
            // The display refuses whoever shows no cookie.
            QLocalSocket stranger;
            stranger.connectToServer("/tmp/.X11-unix/X" + logWord(4).mid(1));
            stranger.write("l\0\x0B\0\0\0\0\0\0\0\0\0", 12);
            QVERIFY(stranger.waitForReadyRead(deadlineMs));
            QCOMPARE(stranger.read(1), QByteArray("\0", 1));

            // Others may have its display and its port soon after the end, but not its processes.
            const QStringList started = startedBy(QString::number(mxsim.processId()));
            QVERIFY(started.contains(logWord(0)));
            for (const QString name : {"Xvfb", "x11vnc", "mxsim", "Xephyr"}) {
                QVERIFY(std::any_of(started.begin(), started.end(),
                                    [&](const QString &each) { return commandLine(each).contains(name); }));
            }
            kill(static_cast<pid_t>(mxsim.processId()), signal);
            QVERIFY(mxsim.waitForFinished(deadlineMs));
            const bool killed = signal == SIGKILL;
            QVERIFY(killed || commandLine(logWord(0)).isEmpty());
            for (const QString &each : started) {
                QVERIFY2(runUntil([&] { return commandLine(each).isEmpty(); }),
                         qPrintable(commandLine(each)));
            }
            QCOMPARE(deskCookie.exists(), killed);
            QVERIFY(QDir(file("unit/dev")).entryList(QDir::System | QDir::Files).isEmpty());
            QVERIFY(!QFileInfo(file("unit/serial1")).isSymLink());
            if (!killed) {
                QVERIFY(mxsim.exitStatus() == QProcess::NormalExit && mxsim.exitCode() == 0);
                QCOMPARE(mxsim.readAllStandardError(), QByteArray());
                QVERIFY(log().endsWith("\nhas its display\nasked to end\n"));
            }
        }
    }

    /// One unit's screen is the desk of others: it passes on what a person does there, and goes with its
    /// desk.
    void windowOnADesk()
    {
        QProcess desk;
        QVERIFY(start(desk, {"--ports=4", "--folder=desk"}).contains("vnc://"));
        m_environment.insert("DISPLAY", logWord(4, "desk"));
        m_environment.insert("XAUTHORITY", logWord(5, "desk"));
        m_tcpPort = freeTcpPort();
        m_udpPort = freeUdpPorts();
        writeScript(
            "for wire in '0 -c1' '1 -c2'; do set $wire; head $2 $MX_ROOT/dev/ttymxc$1 | od -An -tx1 & done" +
            program);
        QProcess panel;
        const QString said = start(panel, {"--ports=4", "--front-panel"});
        QVERIFY2(said.contains("\n  panel       a window of this desk\n"),
                 qPrintable(said + panel.readAllStandardError()));
        QProcess user;
        user.setProcessEnvironment(m_environment);
        QVERIFY(runUntil([&] {
            user.start("xdotool", {"mousemove", "738", "112", "click", "1", "key", "ssharp", "7"});
            user.waitForFinished(deadlineMs);
            return log().contains(" 81 01\n") && log().contains(" 37\n");
        }));
        QVERIFY(ended(panel));

        QProcess mxsim;
        const QString text = start(mxsim, {"--touchscreen"});
        QVERIFY2(text.contains("\n  screen      a window of this desk\n"), qPrintable(text));
        QVERIFY(logWord(4) != logWord(4, "desk"));

        // Its display was its first child.
        kill(startedBy(QString::number(desk.processId())).first().toInt(), SIGTERM);
        for (QProcess *each : {&desk, &mxsim}) {
            QVERIFY(each->waitForFinished(deadlineMs));
            QCOMPARE(each->readAllStandardError(), QByteArray("mxsim: the screen was closed\n"));
            QCOMPARE(each->exitCode(), 1);
        }
        QVERIFY(log().endsWith("\nasked to end\n"));
        QVERIFY(QDir(file("unit/dev")).entryList(QDir::System | QDir::Files).isEmpty());
    }

private:
    QString file(const QString &name) const { return m_folder->filePath(name); }

    void writeScript(const QByteArray &text) const { writeFile("bin/script", "#!/bin/sh\n" + text + "\n"); }

    void writeFile(const QString &name, const QByteArray &bytes) const
    {
        QFile written(file(name));
        written.open(QIODevice::WriteOnly);
        written.write(bytes);
        written.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// In the test's folder as the current one, so that the unit is in "unit" there; later options win.
    /// Returns the output up to the first event on the board, or what it is awaited until.
    QString start(QProcess &mxsim, const QStringList &arguments = {},
                  const QRegularExpression &until = QRegularExpression("dark\n")) const
    {
        mxsim.setWorkingDirectory(m_folder->path());
        mxsim.setProcessEnvironment(m_environment);
        mxsim.start(m_mxsim, QString("--tcp-port=%1 --udp-port=%2").arg(m_tcpPort).arg(m_udpPort).split(' ') +
                                 m_program + arguments);
        QByteArray output;
        while (!QString(output).contains(until) && mxsim.waitForReadyRead(deadlineMs)) {
            output += mxsim.readAllStandardOutput();
        }
        return output;
    }

    /// Runs it to its end, which must be a failure without output, and returns what it says of that.
    QString failure(const QStringList &arguments = {})
    {
        QProcess mxsim;
        m_environment.insert("QT_QPA_PLATFORM", "minimal");
        const QString output = start(mxsim, arguments);
        mxsim.waitForFinished(deadlineMs);
        return (mxsim.exitCode() == 1 ? output : "another exit code: ") + mxsim.readAllStandardError();
    }

    /// What the program has printed: its process, the ports, the platform, the display and its cookie file;
    /// and more.
    QString log(const QString &unit = "unit") const { return content(file(unit + "/mxcontrol.log")); }

    /// One of the words of the first line.
    QString logWord(int index, const QString &unit = "unit") const
    {
        return log(unit).section('\n', 0, 0).section(' ', index, index);
    }

    QString m_mxsim;
    QStringList m_program;
    std::unique_ptr<QTemporaryDir> m_folder;
    quint16 m_tcpPort = 0;
    quint16 m_udpPort = 0;
    QProcessEnvironment m_environment;
};

static const RegisteredTest<TestMxsim> registered;

#include "testmxsim.moc"
