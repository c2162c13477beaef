#include "testregistry.h"
#include "virtualunit.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <fcntl.h>
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
