#include "testregistry.h"
#include "virtualunit.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

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

    /// Waits for what comes next.
    std::string next() const
    {
        pollfd input{get(), POLLIN, 0};
        char bytes[64];
        const ssize_t count = poll(&input, 1, deadlineMs) > 0 ? read(get(), bytes, sizeof bytes) : 0;
        return std::string(bytes, count > 0 ? size_t(count) : 0);
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
    void nothingHasToFollowForTheBoardToMissTheRest()
    {
        sim::VirtualUnit unit(root(), 2);
        const Device device(unit.path(Wire::Matrix));
        QVERIFY(puts(unit, Wire::Matrix, device, "\xEB\x90"));
        QVERIFY(unit.waitFor([&] { return unit.board().faults().size() == 1; }, deadlineMs));
    }

    void cablesBridgeTheControlPorts()
    {
        sim::VirtualUnit unit(root(), 2);
        QVERIFY(unit.plugCables().isDone());
        const std::string answers(4000, 'x');
        const std::string bytes("3x1&4.\r\n\x03\x11\x13\xEB\x90\x00\xFF", 15); // what a terminal would act on
        for (const auto &[wire, cable] : {std::pair(Wire::Control0, "1"), {Wire::Control1, "2"}}) {
            const Device port(unit.path(wire));
            for (int i = 0; i < 100; ++i) { // what nobody listens to is lost
                QVERIFY(puts(unit, wire, port, answers));
            }
            const Device terminal(root() + "/serial" + cable);
            QVERIFY(puts(unit, wire, port, bytes));
            QVERIFY(terminal.gets(unit, bytes));
            QVERIFY(terminal.put(bytes + cable));
            QVERIFY(port.gets(unit, bytes + cable));
            for (int i = 0; i < 100; ++i) { // one that listens but never reads holds up nobody either
                QVERIFY(puts(unit, wire, port, answers));
            }
        }
    }

    void faultsOfALine()
    {
        QVERIFY(QDir(m_folder.path()).mkpath("dev"));
        sim::FarEnds ends(2, {});
        const sim::WireRow &row = sim::Wires[size_t(Wire::Matrix)];
        sim::Line line(root(), row, ends);
        const Device device(root() + row.device);
        line.inject(sim::Fault::CutInTwo);
        line.send("abcd", 0);
        line.flush(99'999);
        QCOMPARE(device.next(), std::string("ab"));
        line.flush(100'000);
        QCOMPARE(device.next(), std::string("cd"));
        line.inject(sim::Fault::GarbageFirst);
        line.flush(0);
        const std::string noise = device.next();
        QVERIFY(noise.size() > 2);
        line.inject(sim::Fault::Noise);
        pollfd input{line.descriptor(), POLLIN, 0};
        QVERIFY(device.put("x") && poll(&input, 1, deadlineMs) == 1);
        line.receive();
        QVERIFY(line.feed(0));
        line.flush(0);
        QCOMPARE(device.next(), noise);
        line.inject(sim::Fault::Stuck);
        QVERIFY(device.put("y") && poll(&input, 1, deadlineMs) == 1);
        line.receive();
        QVERIFY(!line.feed(0) && line.descriptor() == -1 && line.takeReceived() == "x");
    }

    void unusableFolder()
    {
        for (const char *blocked :
             {"dev/ttymxc2", "dev/spidev2.0", "dev/fb0", "sys/class/backlight/backlight.8/brightness"}) {
            const QTemporaryDir folder;
            QVERIFY(QDir(folder.path()).mkpath(blocked)); // in its place
            sim::VirtualUnit unit(folder.path().toStdString(), 2);
            const QString error = unit.made().failure;
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
