#include "testregistry.h"
#include "testunit.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTcpServer>
#include <QTest>
#include <QUdpSocket>

#include <csignal>

/// mxsim as a process, with a program of the test's own on the unit.
class TestMxsim : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void badOptions_data();
    void badOptions();
    void takenPorts();
    void unusableFolder();
    void programThatEnds_data();
    void programThatEnds();
    void showsWhatHappens();
    void lockedFolder();
    void interrupted_data();
    void interrupted();
    void unreadOutput();
    void killedTakesTheProgramAlong();
    void sizeStaysInTheSettings();

private:
    QString file(const QString &name) const { return m_folder->filePath(name); }
    QString script(const QByteArray &text) const;
    void start(QProcess &mxsim, const QStringList &arguments) const;
    void startUnit(QProcess &mxsim, const QStringList &more = {}) const;
    QString failure(const QStringList &arguments) const;
    QStringList told() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    quint16 m_tcpPort = 0;
    quint16 m_udpPort = 0;
};

namespace
{
constexpr int deadlineMs = 20000;

QString beside(const QString &program)
{
    return QCoreApplication::applicationDirPath() + "/" + program;
}

/// Whether a process has ended; whoever adopted it may not have taken notice yet.
bool hasEnded(int pid)
{
    QFile commandLine(QString("/proc/%1/cmdline").arg(pid));
    return !commandLine.open(QIODevice::ReadOnly) || commandLine.readAll().isEmpty();
}

/// Reads standard output until it holds `text`; returns all of it.
QByteArray readUntil(QProcess &process, const QByteArray &text)
{
    QByteArray output;
    while (!output.contains(text) && (process.bytesAvailable() || process.waitForReadyRead(deadlineMs))) {
        output += process.readAll();
    }
    return output;
}
} // namespace

void TestMxsim::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_tcpPort = freeTcpPort();
    m_udpPort = freeUdpPorts();
}

QString TestMxsim::script(const QByteArray &text) const
{
    QFile file(m_folder->filePath("script"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("#!/bin/sh\n" + text + "\n");
    }
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file.fileName();
}

/// In the test's folder as the current one, so that the unit is in "unit" there. Later options win.
void TestMxsim::start(QProcess &mxsim, const QStringList &arguments) const
{
    mxsim.setWorkingDirectory(m_folder->path());
    mxsim.start(beside("mxsim"),
                QStringList({"--tcp-port", QString::number(m_tcpPort), "--udp-port",
                             QString::number(m_udpPort), "--program", beside("fakecontrol")}) +
                    arguments);
}

/// Starts it and waits for the first event on the board.
void TestMxsim::startUnit(QProcess &mxsim, const QStringList &more) const
{
    start(mxsim, QStringList({"--ports", "4"}) + more);
    const QByteArray output = readUntil(mxsim, "outputs 2-3 dark\n");
    QVERIFY2(output.contains("outputs 2-3 dark\n"), (output + mxsim.readAllStandardError()).constData());
}

/// Runs it to its end, which must be a failure with one line on standard error and nothing on standard
/// output, and returns that line.
QString TestMxsim::failure(const QStringList &arguments) const
{
    QProcess mxsim;
    start(mxsim, arguments);
    if (!mxsim.waitForFinished(deadlineMs)) {
        return "does not end";
    }
    const QString error = QString::fromLocal8Bit(mxsim.readAllStandardError());
    if (mxsim.exitCode() != 1 || error.count('\n') != 1 || !error.endsWith('\n') || mxsim.bytesAvailable()) {
        return QString("fails in another way, with code %1: ").arg(mxsim.exitCode()) + error;
    }
    return error.trimmed();
}

/// What the stand-in for the control program wrote down: its process, the ports, the platform, the preloaded
/// libraries.
QStringList TestMxsim::told() const
{
    QFile file(m_folder->filePath("unit/fakecontrol"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(' ') : QStringList();
}

void TestMxsim::badOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const QStringList &arguments, const QString &error) {
        QTest::newRow(qPrintable(arguments.join(' '))) << arguments << error;
    };
    row({"--ports", "1"}, "--ports takes a number from 2 to 160, not \"1\"");
    row({"--ports", "161"}, "--ports takes a number from 2 to 160, not \"161\"");
    row({"--ports", "8x"}, "--ports takes a number from 2 to 160, not \"8x\"");
    row({"--ports", ""}, "--ports takes a number from 2 to 160, not \"\"");
    row({"--scenes", "9"}, "--scenes takes a number from 10 to 40, not \"9\"");
    row({"--scenes", "41"}, "--scenes takes a number from 10 to 40, not \"41\"");
    row({"--tcp-port", "0"}, "--tcp-port takes a number from 1 to 65535, not \"0\"");
    row({"--tcp-port", "65536"}, "--tcp-port takes a number from 1 to 65535, not \"65536\"");
    row({"--udp-port", "65529"}, "--udp-port takes a number from 1 to 65528, not \"65529\"");
    row({"--ports"}, "Missing value after '--ports'.");
    row({"--speed"}, "Unknown option 'speed'.");
    row({"8"}, "\"8\" is no option; see --help");
    row({"--folder", ""}, "--folder takes the name of a folder");
    row({"--program", "nowhere/mxcontrol"}, "there is no program nowhere/mxcontrol");
    row({"--program", "."}, "there is no program .");
    row({"--program", "/etc/passwd"}, "there is no program /etc/passwd");
}

void TestMxsim::badOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    QCOMPARE(failure(arguments), "mxsim: " + error);
    QVERIFY(!QFile::exists(file("unit")));
}

void TestMxsim::takenPorts()
{
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, m_tcpPort));
        const QString error = failure({});
        QVERIFY2(error.startsWith(QString("mxsim: TCP port %1 cannot be had: ").arg(m_tcpPort)),
                 qPrintable(error));
    }
    QUdpSocket socket;
    QVERIFY(socket.bind(QHostAddress(QHostAddress::AnyIPv4), static_cast<quint16>(m_udpPort + 7)));
    const QString error = failure({});
    QVERIFY2(error.startsWith(QString("mxsim: UDP port %1 cannot be had: ").arg(m_udpPort + 7)),
             qPrintable(error));
    QVERIFY(!QFile::exists(file("unit/fakecontrol")));
}

void TestMxsim::unusableFolder()
{
    QVERIFY(QFile(file("taken")).open(QIODevice::WriteOnly));
    QCOMPARE(failure({"--folder", "taken"}),
             QString("mxsim: cannot use the folder %1: Not a directory").arg(file("taken")));
    QVERIFY(QDir(m_folder->path()).mkpath("unit/dev/ttymxc2"));
    QVERIFY(failure({}).startsWith("mxsim: cannot make " + file("unit/dev/ttymxc2")));
}

void TestMxsim::programThatEnds_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("silent") << QByteArray("exit 3") << "with code 3; it printed nothing";
    QTest::newRow("with words") << QByteArray("echo one; echo two >&2; echo; exit 0")
                                << "with code 0; its last output was \"two\"";
    QTest::newRow("in the middle of a line")
        << QByteArray("printf 'one\\rtwo'; exit 1") << "with code 1; its last output was \"two\"";
    QTest::newRow("crash") << QByteArray("kill -SEGV $$") << "after a crash; it printed nothing";
}

void TestMxsim::programThatEnds()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    QCOMPARE(failure({"--program", script(text)}), "mxsim: the program ended by itself, " + error);
}

void TestMxsim::showsWhatHappens()
{
    const QString interposer = QDir::cleanPath(beside("../lib/libmxioctl.so"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD", interposer);
    QProcess mxsim;
    mxsim.setProcessEnvironment(environment);
    start(mxsim, {"--ports", "4", "--scenes", "12"});
    QByteArray output = readUntil(mxsim, "dark\n");
    if (!output.contains("buzzer\n")) { // nothing says which of two wires is served first
        output += readUntil(mxsim, "buzzer\n");
    }
    const QStringList lines = QString::fromUtf8(output).split('\n');
    const QString screen = lines.join('\n');
    for (const QString &word :
         {QString::number(m_tcpPort), QString::number(m_udpPort), QString::number(m_udpPort + 7),
          QString(" unit/serial1\n"), QString(" unit/serial2\n"), QString(" unit\n"),
          QString(" unit/home/app/config/setup.ini\n"), QString(" unit/mxcontrol.log\n"), QString("3x1&4."),
          QString("Ctrl-C")}) {
        QVERIFY2(screen.contains(word), qPrintable(word + " is missing in:\n" + screen));
    }
    QVERIFY(lines.size() <= 24);
    for (const QString &line : lines) {
        QVERIFY2(line.size() <= 80, qPrintable(line));
    }
    QVERIFY(lines.filter(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d\\.\\d{3} buzzer$")).size() == 1);
    QVERIFY(lines.filter(QRegularExpression("^\\S{12} switch   input 3 on outputs 1, 4; outputs 2-3 dark$"))
                .size() == 1);

    QCOMPARE(told().mid(1), QStringList({QString::number(m_tcpPort), QString::number(m_udpPort), "offscreen",
                                         interposer + ":" + interposer}));
    QVERIFY(QFile::exists(file("unit/serial1")) && QFile::exists(file("unit/serial2")));
    QFile log(file("unit/mxcontrol.log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QCOMPARE(log.readAll(), QByteArray("starting\rt0 2026-01-01 00:00:00\n"));
    const QSettings settings(file("unit/home/app/config/setup.ini"), QSettings::IniFormat);
    QCOMPARE(settings.value("system/port").toInt(), 4);
    QCOMPARE(settings.value("system/scene").toInt(), 12);
    mxsim.terminate();
    QVERIFY(mxsim.waitForFinished(deadlineMs));
}

void TestMxsim::lockedFolder()
{
    QProcess first;
    startUnit(first);
    m_tcpPort = freeTcpPort();
    m_udpPort = freeUdpPorts();
    QCOMPARE(failure({}), QString("mxsim: the folder %1 is in use by another mxsim").arg(file("unit")));
    QVERIFY(QFile::exists(file("unit/dev/gpiodev")));
    first.terminate();
    QVERIFY(first.waitForFinished(deadlineMs));
    QProcess again;
    startUnit(again);
    again.terminate();
    QVERIFY(again.waitForFinished(deadlineMs));
}

void TestMxsim::interrupted_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void TestMxsim::interrupted()
{
    QFETCH(int, signal);
    QProcess mxsim;
    startUnit(mxsim);
    const int program = told().first().toInt();
    QVERIFY(!hasEnded(program));
    kill(static_cast<pid_t>(mxsim.processId()), signal);
    QVERIFY(mxsim.waitForFinished(deadlineMs));
    QCOMPARE(mxsim.exitStatus(), QProcess::NormalExit);
    QCOMPARE(mxsim.exitCode(), 0);
    QCOMPARE(mxsim.readAllStandardError(), QByteArray());
    QVERIFY(hasEnded(program));
    QFile log(file("unit/mxcontrol.log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().endsWith("\nasked to end\n"));
    QCOMPARE(QDir(file("unit/dev")).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             QStringList());
    QVERIFY(!QFileInfo(file("unit/serial1")).isSymLink());
    QVERIFY(QFile::exists(file("unit/home/app/config/setup.ini")));
}

/// As when the output goes to a pager that is left.
void TestMxsim::unreadOutput()
{
    QProcess mxsim;
    QProcess reader;
    mxsim.setStandardOutputProcess(&reader);
    start(mxsim, {"--ports", "4"});
    reader.start("head", {"-n", "1"});
    QVERIFY(reader.waitForFinished(deadlineMs));
    QFile matrix(file("unit/dev/ttymxc2"));
    if (matrix.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) { // unless it is ending already
        matrix.write("noise");
    }
    QVERIFY(mxsim.waitForFinished(deadlineMs));
    QCOMPARE(mxsim.exitCode(), 1);
    QCOMPARE(mxsim.readAllStandardError(), QByteArray("mxsim: cannot write the output: Broken pipe\n"));
    QVERIFY(hasEnded(told().first().toInt()));
}

void TestMxsim::killedTakesTheProgramAlong()
{
    QProcess mxsim;
    startUnit(mxsim);
    const int program = told().first().toInt();
    mxsim.kill();
    QVERIFY(mxsim.waitForFinished(deadlineMs));
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(program), deadlineMs);
}

void TestMxsim::sizeStaysInTheSettings()
{
    QVERIFY(QDir(m_folder->path()).mkpath("unit/home/app/config"));
    const QString path = file("unit/home/app/config/setup.ini");
    {
        QSettings settings(path, QSettings::IniFormat);
        settings.setValue("system/port", 4);
        settings.setValue("system/beep", 1);
    }
    QProcess mxsim;
    start(mxsim, {}); // a board of another size would not understand the frame
    QVERIFY(readUntil(mxsim, "dark\n").contains("switch   input 3 on outputs 1, 4; outputs 2-3 dark\n"));
    mxsim.terminate();
    QVERIFY(mxsim.waitForFinished(deadlineMs));
    const QSettings settings(path, QSettings::IniFormat);
    QCOMPARE(settings.value("system/port").toInt(), 4);
    QCOMPARE(settings.value("system/beep").toInt(), 1);
    QVERIFY(!settings.contains("system/scene"));
}

static const RegisteredTest<TestMxsim> registered;

#include "testmxsim.moc"
