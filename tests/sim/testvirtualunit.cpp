#include "testregistry.h"
#include "virtualunit.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{
constexpr int deadlineMs = 10000;
const std::string pair = "F00C000000010000\r\nF00C000000010000\r\n";

/// The program's end of a device, opened as the program does it.
class Device
{
public:
    explicit Device(const std::string &path)
        : m_fd(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
    }
    ~Device() { close(m_fd); }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

    int fd() const { return m_fd; }

    bool put(const std::string &bytes) const
    {
        return write(m_fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }

    /// All that is there now.
    std::string take() const
    {
        std::string all;
        char bytes[4096];
        for (ssize_t n; (n = read(m_fd, bytes, sizeof bytes)) > 0;) {
            all.append(bytes, static_cast<size_t>(n));
        }
        return all;
    }

private:
    int m_fd;
};

/// Waits until the program has read `expected` on a device, and nothing else.
bool gets(const sim::VirtualUnit &unit, const Device &device, const std::string &expected)
{
    std::string received;
    unit.waitFor([&] { return (received += device.take()).size() >= expected.size(); }, deadlineMs);
    return received == expected;
}

/// Waits until the unit has received `expected` from the program, and nothing else.
bool has(sim::VirtualUnit &unit, sim::Wire wire, const std::string &expected)
{
    std::string received;
    unit.waitFor([&] { return (received += unit.takeReceived(wire)).size() >= expected.size(); }, deadlineMs);
    return received == expected;
}
} // namespace

class TestVirtualUnit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void serialLinksCarryBytesBothWays();
    void serialSettingsAreReadBack();
    void matrixLinkReachesTheBoard();
    void cutFrameIsAFaultWithoutFurtherBytes();
    void devicesReachTheirFarEnds();
    void kernelFiles();
    void longTextArrivesWhole();
    void cablesBridgeTheControlPorts();
    void unheardCableKeepsNothing();
    void unpluggedDeviceIsMissing();
    void faults();
    void rootIsUsedAgain();
    void unusableFolder_data();
    void unusableFolder();
    void waitForGivesUp();

private:
    std::string root() const { return m_folder->path().toStdString(); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestVirtualUnit::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestVirtualUnit::serialLinksCarryBytesBothWays()
{
    sim::VirtualUnit unit(root(), 2);
    QCOMPARE(unit.error(), std::string());
    const std::string bytes("3x1&4.\r\n\x03\x11\x13\xEB\x90\x00\xFF", 15); // what a terminal would act upon
    for (size_t i = 0; i < sim::serialWireCount; ++i) {
        const sim::Wire wire = sim::allWires[i];
        const Device device(unit.path(wire));
        unit.send(wire, bytes);
        QVERIFY(gets(unit, device, bytes));
        QVERIFY(device.put(bytes));
        QVERIFY(has(unit, wire, bytes));
    }
}

void TestVirtualUnit::serialSettingsAreReadBack()
{
    sim::VirtualUnit unit(root(), 2);
    const Device device(unit.path(sim::Wire::Control1));
    termios attributes = unit.attributes(sim::Wire::Control1);
    QVERIFY(!(attributes.c_lflag & (ECHO | ICANON)));
    attributes.c_iflag = IGNBRK | IGNPAR;
    cfsetispeed(&attributes, B9600);
    cfsetospeed(&attributes, B9600);
    tcsetattr(device.fd(), TCSANOW, &attributes);

    attributes = unit.attributes(sim::Wire::Control1);
    QCOMPARE(cfgetospeed(&attributes), speed_t(B9600));
    QCOMPARE(attributes.c_iflag, tcflag_t(IGNBRK | IGNPAR));
    attributes = unit.attributes(sim::Wire::Control0);
    QVERIFY(cfgetospeed(&attributes) != B9600);
}

void TestVirtualUnit::matrixLinkReachesTheBoard()
{
    sim::VirtualUnit unit(root(), 2);
    const Device matrix(unit.path(sim::Wire::Matrix));
    QVERIFY(matrix.put(pair));
    QVERIFY(unit.waitFor([&] { return unit.board().routing() == std::vector<uint16_t>{1, 0}; }, deadlineMs));
    QVERIFY(unit.board().faults().empty());
    QCOMPARE(unit.board().bytes(), std::vector<uint8_t>(pair.begin(), pair.end()));
}

void TestVirtualUnit::cutFrameIsAFaultWithoutFurtherBytes()
{
    sim::VirtualUnit unit(root(), 2);
    const Device matrix(unit.path(sim::Wire::Matrix));
    QVERIFY(matrix.put(pair.substr(0, 10)));
    QVERIFY(unit.waitFor([&] { return !unit.board().faults().empty(); }, deadlineMs));
    QCOMPARE(unit.board().faults().at(0).text, std::string("a frame is cut off after 10 bytes"));
}

void TestVirtualUnit::devicesReachTheirFarEnds()
{
    sim::VirtualUnit unit(root(), 2);
    const Device gpio(unit.path(sim::Wire::Gpio));
    QCOMPARE(ioctl(gpio.fd(), 1, 8), 0);
    QVERIFY(unit.waitFor([&] { return unit.gpio().level(8) == 1; }, deadlineMs));

    const Device spi(unit.path(sim::Wire::Spi));
    QVERIFY(spi.put("record"));
    QVERIFY(has(unit, sim::Wire::Spi, "record"));
    unit.send(sim::Wire::Gpio, "x"); // carries nothing that way
    QCOMPARE(unit.attributes(sim::Wire::Gpio).c_cflag, tcflag_t(0));
}

void TestVirtualUnit::kernelFiles()
{
    sim::VirtualUnit unit(root(), 2);
    QCOMPARE(unit.backlight(), 0);
    QFile brightness(m_folder->filePath("sys/class/backlight/backlight.8/brightness"));
    QVERIFY(brightness.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    QCOMPARE(brightness.write("7"), 1);
    QCOMPARE(unit.backlight(), 7);
    QVERIFY(brightness.remove());
    QCOMPARE(unit.backlight(), -1);

    QFile temperature(m_folder->filePath("sys/devices/virtual/thermal/thermal_zone0/temp"));
    QVERIFY(temperature.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    QCOMPARE(temperature.readAll(), QByteArray("45123\n"));
    unit.setTemperature("9\n");
    temperature.seek(0);
    QCOMPARE(temperature.readAll(), QByteArray("9\n"));
}

/// More than a pty takes at once.
void TestVirtualUnit::longTextArrivesWhole()
{
    sim::VirtualUnit unit(root(), 2);
    const Device device(unit.path(sim::Wire::Control0));
    std::string text;
    for (int i = 0; text.size() < 300'000; ++i) {
        text += std::to_string(i) + ".";
    }
    unit.send(sim::Wire::Control0, text);
    QVERIFY(gets(unit, device, text));
}

void TestVirtualUnit::cablesBridgeTheControlPorts()
{
    sim::VirtualUnit unit(root(), 2);
    QVERIFY(unit.plugCables());
    const Device port0(unit.path(sim::Wire::Control0));
    const Device port1(unit.path(sim::Wire::Control1));
    const Device terminal1(root() + "/serial1");
    const Device terminal2(root() + "/serial2");
    QVERIFY(terminal1.put("1x2."));
    QVERIFY(terminal2.put("2x1."));
    QVERIFY(gets(unit, port0, "1x2."));
    QVERIFY(gets(unit, port1, "2x1."));
    QVERIFY(port0.put("OK."));
    QVERIFY(port1.put("ERR."));
    QVERIFY(gets(unit, terminal1, "OK."));
    QVERIFY(gets(unit, terminal2, "ERR."));
}

void TestVirtualUnit::unheardCableKeepsNothing()
{
    sim::VirtualUnit unit(root(), 2);
    QVERIFY(unit.plugCables());
    const Device port(unit.path(sim::Wire::Control0));
    const std::string answers(4000, 'x');
    for (int i = 0; i < 100; ++i) {
        QVERIFY(port.put(answers));
        QVERIFY(has(unit, sim::Wire::Control0, answers));
    }
    const Device terminal(root() + "/serial1");
    QVERIFY(port.put("OK."));
    QVERIFY(gets(unit, terminal, "OK."));
    QVERIFY(has(unit, sim::Wire::Control0, "OK."));

    // One that listens but never reads holds up nobody either.
    for (int i = 0; i < 100; ++i) {
        QVERIFY(port.put(answers));
        QVERIFY(has(unit, sim::Wire::Control0, answers));
    }
}

void TestVirtualUnit::unpluggedDeviceIsMissing()
{
    sim::VirtualUnit unit(root(), 2);
    for (const sim::Wire wire : sim::allWires) {
        QCOMPARE(access(unit.path(wire).c_str(), F_OK), 0);
        unit.unplug(wire);
        QCOMPARE(access(unit.path(wire).c_str(), F_OK), -1);
        QCOMPARE(errno, ENOENT);
    }
}

/// Each fault shows where it should, and the other wires go on.
void TestVirtualUnit::faults()
{
    for (const sim::Fault fault : sim::allFaults) {
        sim::VirtualUnit unit(root(), 2);
        unit.inject(fault);
        const Device matrix(unit.path(sim::Wire::Matrix));
        const Device control(unit.path(sim::Wire::Control0));
        std::string noise;
        const auto hears = [&] { return !(noise += matrix.take()).empty(); };
        QCOMPARE(unit.waitFor(hears, fault == sim::Fault::MatrixGarbageFirst ? deadlineMs : 0),
                 fault == sim::Fault::MatrixGarbageFirst);

        QVERIFY(matrix.put(pair));
        unit.send(sim::Wire::Control0, "12.");
        std::string received;
        QVERIFY(unit.waitFor([&] { return !(received = control.take()).empty(); }, deadlineMs));
        QCOMPARE(received, std::string(fault == sim::Fault::ControlCutInTwo ? "1" : "12."));
        unit.send(sim::Wire::Control0, "34.");
        QVERIFY(gets(unit, control, fault == sim::Fault::ControlCutInTwo ? "2.34." : "34."));

        if (fault == sim::Fault::MatrixStuck) {
            QVERIFY(control.put("OK."));
            QVERIFY(has(unit, sim::Wire::Control0, "OK."));
            QVERIFY(unit.board().bytes().empty());
        } else {
            QVERIFY(unit.waitFor([&] { return unit.board().switchFrames().size() == 1; }, deadlineMs));
        }
        if (fault == sim::Fault::MatrixNoise) {
            QVERIFY(unit.waitFor(hears, deadlineMs));
        } else if (fault != sim::Fault::MatrixGarbageFirst) {
            QVERIFY(!hears());
        }
    }
}

void TestVirtualUnit::rootIsUsedAgain()
{
    const QString settings = m_folder->filePath("home/app/config/setup.ini");
    {
        sim::VirtualUnit unit(root(), 2);
        QVERIFY(unit.plugCables());
        QVERIFY(unit.writeSettings({{"system/port", "8"}, {"system/language", "en"}}));
        QVERIFY(unit.writeSettings({{"system/port", "12"}}));
        unit.setTemperature("99999\n");
        Device(unit.path(sim::Wire::Control0)).put("old");
    }
    QVERIFY(!QFile::exists(m_folder->filePath("serial1")));
    QVERIFY(!QFile::exists(m_folder->filePath("dev/gpiodev")));
    // Left behind by one that was killed.
    QVERIFY(QFile::link("/dev/null", m_folder->filePath("dev/ttymxc3")));
    QVERIFY(QFile::link("/dev/null", m_folder->filePath("dev/gpiodev")));

    sim::VirtualUnit unit(root(), 2);
    QCOMPARE(unit.error(), std::string());
    const QSettings kept(settings, QSettings::IniFormat);
    QCOMPARE(kept.value("system/port").toInt(), 12);
    QCOMPARE(kept.value("system/language").toString(), QString("en"));
    const Device control(unit.path(sim::Wire::Control0));
    QVERIFY(control.put("new"));
    QVERIFY(has(unit, sim::Wire::Control0, "new"));
    const Device gpio(unit.path(sim::Wire::Gpio));
    QCOMPARE(ioctl(gpio.fd(), 1, 4), 0);
}

void TestVirtualUnit::unusableFolder_data()
{
    QTest::addColumn<QString>("blocked");
    QTest::addColumn<bool>("byFolder");
    QTest::newRow("file in place of a folder") << "home" << false;
    QTest::newRow("folder in place of a pty") << "dev/ttymxc2" << true;
    QTest::newRow("folder in place of a FIFO") << "dev/spidev2.0" << true;
    QTest::newRow("folder in place of a file") << "sys/devices/virtual/thermal/thermal_zone0/temp" << true;
}

void TestVirtualUnit::unusableFolder()
{
    QFETCH(QString, blocked);
    QFETCH(bool, byFolder);
    if (byFolder) {
        QVERIFY(QDir(m_folder->path()).mkpath(blocked));
    } else {
        QVERIFY(QFile(m_folder->filePath(blocked)).open(QIODevice::WriteOnly));
    }

    sim::VirtualUnit unit(root(), 2);
    const QString error = QString::fromStdString(unit.error());
    QVERIFY2(error.contains(blocked) && !error.contains('\n'), qPrintable(error));
    for (const sim::Wire wire : sim::allWires) {
        unit.send(wire, "x");
        unit.unplug(wire);
        unit.attributes(wire);
    }
    for (const sim::Fault fault : sim::allFaults) {
        unit.inject(fault);
    }
    QVERIFY(QFileInfo::exists(m_folder->filePath(blocked)));
}

void TestVirtualUnit::waitForGivesUp()
{
    const sim::VirtualUnit unit(root(), 2);
    QVERIFY(!unit.waitFor([] { return false; }, 50));
}

static const RegisteredTest<TestVirtualUnit> registered;

#include "testvirtualunit.moc"
