#include "testregistry.h"
#include "testunit.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

using sim::Wire;

namespace
{
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
    bool gets(const std::string &expected) const
    {
        std::string all;
        char byte;
        const auto hasCome = [&] {
            while (read(get(), &byte, 1) == 1) {
                all += byte;
            }
            return all.size() >= expected.size();
        };
        return runUntil(hasCome) && all == expected;
    }
};
} // namespace

class TestVirtualUnit : public QObject
{
    Q_OBJECT

private slots:
    void nothingHasToFollowForTheBoardToMissTheRest()
    {
        TestUnit unit(2);
        QVERIFY(Device(unit.hardware().path(Wire::Matrix)).put("\xEB\x90"));
        QVERIFY(runUntil([&] { return unit.faults() == "board: a frame is cut off after 2 bytes\n"; }));
    }

    void cablesBridgeTheControlPorts()
    {
        TestUnit unit(2);
        QVERIFY(unit.hardware().plugCables().isDone());
        const auto puts = [&unit](Wire wire, const Device &port, const std::string &bytes) {
            return port.put(bytes) && unit.receive(wire, int(bytes.size())).toStdString() == bytes;
        };
        const std::string answers(4000, 'x');
        const std::string bytes("3x1&4.\r\n\x03\x11\x13\xEB\x90\x00\xFF", 15); // what a terminal would act on
        for (const auto &[wire, cable] : {std::pair(Wire::Control0, "1"), {Wire::Control1, "2"}}) {
            const Device port(unit.hardware().path(wire));
            for (int i = 0; i < 100; ++i) { // what nobody listens to is lost
                QVERIFY(puts(wire, port, answers));
            }
            const Device terminal(unit.root().toStdString() + "/serial" + cable);
            QVERIFY(puts(wire, port, bytes));
            QVERIFY(terminal.gets(bytes));
            QVERIFY(terminal.put(bytes + cable));
            QVERIFY(port.gets(bytes + cable));
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
};

static const RegisteredTest<TestVirtualUnit> registered;

#include "testvirtualunit.moc"
