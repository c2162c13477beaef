#include "testregistry.h"
#include "virtualunit.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <fcntl.h>
#include <unistd.h>

using sim::Wire;

namespace
{
constexpr int deadlineMs = 10000;

/// The program's end of a device, opened as the program does it.
struct Device : sim::Descriptor {
    explicit Device(const std::string &path)
        : Descriptor(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
    }

    bool put(const std::string &bytes) const
    {
        return write(get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }

    /// Waits until the program has read `expected`, and nothing else.
    bool gets(const sim::VirtualUnit &unit, const std::string &expected) const
    {
        std::string all;
        char byte;
        const auto hasCome = [&] {
            while (read(get(), &byte, 1) == 1) {
                all += byte;
            }
            return all.size() >= expected.size();
        };
        return unit.waitFor(hasCome, deadlineMs) && all == expected;
    }
};

/// Has the program write, and waits until the unit has received that, and nothing else.
bool puts(sim::VirtualUnit &unit, Wire wire, const Device &device, const std::string &bytes)
{
    std::string all;
    const auto hasCome = [&] { return (all += unit.takeReceived(wire)).size() >= bytes.size(); };
    return device.put(bytes) && unit.waitFor(hasCome, deadlineMs) && all == bytes;
}
} // namespace

class TestVirtualUnit : public QObject
{
    Q_OBJECT

private slots:
    void wiresCarryBytes()
    {
        sim::VirtualUnit unit(root(), 2);
        QCOMPARE(unit.error(), std::string());
        const std::string bytes("3x1&4.\r\n\x03\x11\x13\xEB\x90\x00\xFF", 15); // what a terminal would act on
        for (const Wire wire : sim::allWires) {
            const Device device(unit.path(wire));
            QVERIFY(puts(unit, wire, device, bytes));
            if (wire != Wire::Gpio && wire != Wire::Spi) {
                unit.send(wire, bytes);
                QVERIFY(device.gets(unit, bytes));
            }
        }
        // Nothing has to follow for the board to miss the rest.
        QVERIFY(unit.waitFor([&] { return unit.board().faults().size() == 2; }, deadlineMs));
        QCOMPARE(unit.board().faults().at(1).text, std::string("a frame is cut off after 4 bytes"));
    }

    void serialSettingsAreReadBack()
    {
        sim::VirtualUnit unit(root(), 2);
        const Device device(unit.path(Wire::Control1));
        termios attributes = unit.attributes(Wire::Control1);
        cfsetospeed(&attributes, B9600);
        tcsetattr(device.get(), TCSANOW, &attributes);
        attributes = unit.attributes(Wire::Control1);
        QCOMPARE(cfgetospeed(&attributes), speed_t(B9600));
    }

    void cablesBridgeTheControlPorts()
    {
        sim::VirtualUnit unit(root(), 2);
        QVERIFY(unit.plugCables());
        const std::string answers(4000, 'x');
        for (const auto &[wire, cable] : {std::pair(Wire::Control0, "1"), {Wire::Control1, "2"}}) {
            const Device port(unit.path(wire));
            for (int i = 0; i < 100; ++i) { // what nobody listens to is lost
                QVERIFY(puts(unit, wire, port, answers));
            }
            const Device terminal(root() + "/serial" + cable);
            QVERIFY(puts(unit, wire, port, "OK."));
            QVERIFY(terminal.gets(unit, "OK."));
            QVERIFY(terminal.put(cable));
            QVERIFY(port.gets(unit, cable));
            for (int i = 0; i < 100; ++i) { // one that listens but never reads holds up nobody either
                QVERIFY(puts(unit, wire, port, answers));
            }
        }
    }

    void unpluggedDeviceIsMissing()
    {
        sim::VirtualUnit unit(root(), 2);
        for (const Wire wire : sim::allWires) {
            QCOMPARE(access(unit.path(wire).c_str(), F_OK), 0);
            unit.unplug(wire);
            QCOMPARE(access(unit.path(wire).c_str(), F_OK), -1);
        }
    }

    void unusableFolder()
    {
        // A folder in place of a pty, a FIFO, a file.
        for (const char *blocked :
             {"dev/ttymxc2", "dev/spidev2.0", "sys/class/backlight/backlight.8/brightness"}) {
            const QTemporaryDir folder;
            QVERIFY(QDir(folder.path()).mkpath(blocked));
            sim::VirtualUnit unit(folder.path().toStdString(), 2);
            const QString error = QString::fromStdString(unit.error());
            QVERIFY2(error.contains(blocked) && !error.contains('\n'), qPrintable(error));
            unit.send(Wire::Matrix, "x");
            QVERIFY(QFileInfo::exists(folder.filePath(blocked)));
        }
    }

private:
    std::string root() const { return m_folder.path().toStdString(); }

    QTemporaryDir m_folder; ///< used again by each unit
};

static const RegisteredTest<TestVirtualUnit> registered;

#include "testvirtualunit.moc"
