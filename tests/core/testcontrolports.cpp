#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <atomic>

using sim::Wire;
Q_DECLARE_METATYPE(Wire)

/// The serial links on real terminals: their set-up, commands, and what becomes of them without devices.
class TestControlPorts : public QObject
{
    Q_OBJECT

private slots:
    void setUp_data()
    {
        columns<int, speed_t>("baudrate", "speed");
        row("known", 300, speed_t(B300));
        row("unknown to the driver", 96000, speed_t(B115200));
        row("none", 0, speed_t(B115200));
    }
    void setUp()
    {
        QFETCH(int, baudrate);
        QFETCH(speed_t, speed);
        TestUnit unit(4, {{"system/baudrate", std::to_string(baudrate)}, {"system/backlight", "4"}});
        const tcflag_t sizeAndParity = unit.hardware().attributes(Wire::Control0).c_cflag & ~tcflag_t(CBAUD);
        unit.start(false);
        for (const Wire wire : {Wire::Control0, Wire::Control1}) {
            const termios set = unit.hardware().attributes(wire);
            QCOMPARE(cfgetospeed(&set), speed);
            QCOMPARE(cfgetispeed(&set), speed);
            QCOMPARE(set.c_iflag, tcflag_t(IGNBRK | IGNPAR));
            QCOMPARE(set.c_oflag, tcflag_t(0));
            QCOMPARE(set.c_lflag & (ICANON | ECHO | ISIG), tcflag_t(0));
            QCOMPARE(set.c_cflag & ~tcflag_t(CBAUD), sizeAndParity);
            QCOMPARE(int(set.c_cc[VMIN]), 0);
            QCOMPARE(int(set.c_cc[VTIME]), 0);
        }
        QCOMPARE(unit.hardware().files().backlight(), 5);
        for (const char byte : {'9', '?', '.'}) {
            unit.comm().MxUartProc1(byte);
        }
        QCOMPARE(unit.receive(Wire::Control1, 4), QByteArray("ERR."));
        const termios matrix = unit.hardware().attributes(Wire::Matrix);
        QCOMPARE(cfgetospeed(&matrix), speed_t(B115200));
    }

    void bothPortsTalkAtOnce()
    {
        RunningUnit unit(8);
        // A line cut in two on one port while the other is busy: neither mixes with the other.
        unit.hardware().send(Wire::Control0, "3x1");
        QCOMPARE(unit.talk(Wire::Control1, "5x2.7?.", 2), QByteArray("OK.7x."));
        QCOMPARE(unit.talk(Wire::Control0, "&4.bad$.3?.", 4), QByteArray("OK.ERR.ERR.3x1&4."));
        // NUL and LF end no line.
        QCOMPARE(unit.talk(Wire::Control0, QByteArray("8\0x7\n%2x6!", 10), 2), QByteArray("OK.OK."));
        // The longest line, and one that is dropped: more than one read takes.
        QCOMPARE(unit.talk(Wire::Control0, QByteArray(4092, ' ') + "1x3." + QByteArray(4096, '4') + "5?.", 2),
                 QByteArray("OK.5x2."));
        QVERIFY(unit.boardShows({3, 5, 1, 3, 1, 2, 8, 1}));
        QCOMPARE(unit.faults(), QByteArray());
    }

    void afterARecallTheOtherPortAndTheBoardHaveTheirTurn()
    {
        std::atomic<bool> seen{false};
        int recalls = 0;
        TestUnit unit(4);
        unit.start(true, [&](unsigned long ms) {
            if (++recalls == 1) {
                QThread::msleep(ms); // behind which nothing holds back a frame
            } else {
                unit.hardware().waitFor([&] { return bool(seen); }, 10000);
            }
        });
        QCOMPARE(unit.talk(Wire::Control0, "all1.save1.4all.save2.", 4), QByteArray("OK.OK.OK.OK."));
        unit.hardware().send(Wire::Control0, "recall1.recall2.4?.");
        QVERIFY(unit.hardware().waitFor([&] { return unit.shm().map[0] == 0; }, 5000));
        QCOMPARE(unit.talk(Wire::Control1, "9?."), QByteArray("ERR."));
        QVERIFY(unit.boardShows({1, 2, 3, 4}));
        seen = true;
        QCOMPARE(unit.receive(Wire::Control0, 16), QByteArray("OK.OK.4x1&2&3&4."));
    }

    void temperature()
    {
        RunningUnit unit(4);
        for (const auto &[millidegrees, reply] : {std::pair(std::string("45123\n"), "temp=45."),
                                                  {"", "temp=."},
                                                  {std::string(1000, '3'), "temp=33."}}) {
            QVERIFY(unit.hardware().files().setTemperature(millidegrees).isDone());
            QCOMPARE(unit.talk(Wire::Control1, "temp."), QByteArray(reply));
        }
    }

    void withoutControlPortsTheBoardIsStillServed()
    {
        TestUnit unit(4);
        unit.start(false);
        unit.shm().baudrate = -1;
        unit.shm().uptime = -1;
        unit.comm().start();
        unit.comm().MxCmdOneToOne(2, 1);
        unit.hardware().send(Wire::Control0, "4x4.");
        QVERIFY(unit.boardShows({1, 3, 1, 1}));
        unit.shm().baudrate = 115200;
        QVERIFY(unit.boardShows({1, 3, 1, 4}));
        QVERIFY(unit.hardware().waitFor([&] { return unit.shm().uptime >= 0; }, 10000));
    }

    void missingDevices_data()
    {
        columns<Wire, bool>("wire", "folder");
        for (const sim::WireRow &missing : sim::Wires) {
            row(QByteArray("no ") + missing.device, missing.wire, false);
            row(QByteArray("a folder in place of ") + missing.device, missing.wire, true);
        }
    }
    /// The unit lives on with each device missing in turn.
    void missingDevices()
    {
        QFETCH(Wire, wire);
        QFETCH(bool, folder);
        TestUnit unit(4);
        const std::string node = unit.hardware().path(wire);
        unit.hardware().unplug(wire);
        if (folder) {
            unit.makeFolder(node.c_str() + unit.root().size());
        }
        unit.start();
        unit.comm().MxCmdOneToOne(2, 1);
        unit.comm().MxSetBacklight(3);
        QCOMPARE(unit.hardware().files().backlight(), 3);
        for (const Wire other : {Wire::Control0, Wire::Control1}) {
            if (other != wire) {
                QCOMPARE(unit.talk(other, "4x4."), QByteArray("OK."));
            }
        }
        QVERIFY(unit.hardware().waitFor(
            [&] {
                return unit.fileContent("/home/app/data/scene0").startsWith(QByteArray("\0\0\2\0", 4)) &&
                       (wire == Wire::Matrix || unit.hardware().board().routing()[1] == 2);
            },
            5000));
        QCOMPARE(unit.faults(), QByteArray());
    }

    void aStuckBoardStopsNothing()
    {
        TestUnit unit(160);
        unit.hardware().stick(Wire::Matrix);
        unit.start();
        for (int i = 0; i < 30; ++i) {
            unit.hardware().send(Wire::Control0, "\xEB\x90\x0F\xFF" + std::string(4091, '\0'));
            QCOMPARE(unit.receive(Wire::Control0, 7).right(7), QByteArray::fromHex("EB900007000000"));
        }
        // The longest reply: the digits of all outputs, with a separator between them.
        QCOMPARE(unit.talk(Wire::Control1, "160all.160?.", 2).size(), 3 + 4 + (9 + 180 + 183) + 159 + 1);
        QCOMPARE(unit.boardBytes(), QByteArray());
    }
};

static const RegisteredTest<TestControlPorts> registered;
#include "testcontrolports.moc"
