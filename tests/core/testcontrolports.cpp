#include "testregistry.h"
#include "testunit.h"

#include <QTest>

using sim::Wire;

/// The serial links on real terminals: their set-up, commands, and what becomes of them without devices.
class TestControlPorts : public QObject
{
    Q_OBJECT

private slots:
    void setUp()
    {
        // Accepted and known, accepted but unknown to the driver, and missing.
        for (const auto &[baudrate, speed] : {std::pair(300, B300), {96000, B115200}, {0, B115200}}) {
            TestUnit unit(4, {{"system/baudrate", std::to_string(baudrate)}});
            const tcflag_t sizeAndParity =
                unit.hardware().attributes(Wire::Control0).c_cflag & ~tcflag_t(CBAUD);
            unit.start(false);
            for (const Wire wire : {Wire::Control0, Wire::Control1}) {
                const termios set = unit.hardware().attributes(wire);
                QCOMPARE(cfgetospeed(&set), speed_t(speed));
                QCOMPARE(cfgetispeed(&set), speed_t(speed));
                QCOMPARE(set.c_iflag, tcflag_t(IGNBRK | IGNPAR));
                QCOMPARE(set.c_oflag, tcflag_t(0));
                QCOMPARE(set.c_lflag & (ICANON | ECHO | ISIG), tcflag_t(0));
                QCOMPARE(set.c_cflag & ~tcflag_t(CBAUD), sizeAndParity);
                QCOMPARE(int(set.c_cc[VMIN]), 0);
                QCOMPARE(int(set.c_cc[VTIME]), 0);
            }
            const termios matrix = unit.hardware().attributes(Wire::Matrix);
            QCOMPARE(cfgetospeed(&matrix), speed_t(B115200));
        }
    }

    void bothPortsTalkAtOnce()
    {
        RunningUnit unit(8);
        // A line cut in two on one port while the other is busy: neither mixes with the other.
        unit.hardware().send(Wire::Control0, "3x1");
        QCOMPARE(unit.talk(Wire::Control1, "5x2.7?.", 2), QByteArray("OK.7x."));
        QCOMPARE(unit.talk(Wire::Control0, "&4.3?.", 2), QByteArray("OK.3x1&4."));
        for (const auto &[text, replies] :
             {std::pair<QByteArray, QByteArray>("5X6!bad$..", "OK.ERR.ERR.ERR."),
              {"5x6%6?\r1x3\n.", "OK.6x.OK."},
              {QByteArray("1\0x7.", 5), "OK."},
              {"1x3" + QByteArray(4092, ' ') + ".", "OK."}, // one more, and all of them are dropped
              {"1x3" + QByteArray(4093, ' ') + ".", "ERR."},
              {QByteArray(4096, '4') + "6?.", "6x."}}) {
            QCOMPARE(unit.talk(Wire::Control0, text, replies.count('.')), replies);
        }
        QVERIFY(unit.boardShows({3, 5, 1, 3, 1, 5, 1, 1}));
        QCOMPARE(unit.faults(), QByteArray());
    }

    void afterARecallTheOtherPortAndTheBoardHaveTheirTurn()
    {
        RunningUnit unit(4);
        QCOMPARE(unit.talk(Wire::Control0, "all1.save1.4all.save2.", 4), QByteArray("OK.OK.OK.OK."));
        unit.hardware().send(Wire::Control0, "recall1.recall2.4?.");
        QVERIFY(unit.hardware().waitFor([&] { return unit.shm().map[0] == 0; }, 5000));
        QCOMPARE(unit.talk(Wire::Control1, "9?."), QByteArray("ERR."));
        QVERIFY(unit.boardShows({1, 2, 3, 4}));
        QCOMPARE(unit.receive(Wire::Control0, 3), QByteArray("OK."));
        QCOMPARE(unit.receive(Wire::Control0, 13), QByteArray("OK.4x1&2&3&4."));
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
        unit.comm().start();
        unit.comm().MxCmdOneToOne(2, 1);
        unit.hardware().send(Wire::Control0, "4x4.");
        QVERIFY(unit.boardShows({1, 3, 1, 1}));
        unit.shm().baudrate = 115200;
        QVERIFY(unit.boardShows({1, 3, 1, 4}));
    }

    /// The unit lives on with each device missing in turn, and a folder in its place does no more harm.
    void missingDevices()
    {
        for (int i = 0; i < 2 * int(sim::Wires.size()); ++i) {
            const Wire wire = sim::Wires[size_t(i / 2)].wire;
            TestUnit unit(4);
            const std::string node = unit.hardware().path(wire);
            unit.hardware().unplug(wire);
            if (i % 2 == 1) {
                unit.makeFolder(node.c_str() + unit.root().size());
            }
            unit.start();
            unit.comm().MxCmdOneToOne(2, 1);
            unit.comm().MxSetBacklight(3);
            QCOMPARE(unit.hardware().files().backlight(), 3);
            for (const Wire other : {Wire::Control0, Wire::Control1}) {
                if (other != wire) {
                    QVERIFY2(unit.talk(other, "4x4.") == "OK.", node.c_str());
                }
            }
            const auto routed = [&] {
                return unit.fileContent("/home/app/data/scene0").startsWith(QByteArray("\0\0\2\0", 4)) &&
                       (wire == Wire::Matrix || unit.hardware().board().routing()[1] == 2);
            };
            QVERIFY2(unit.hardware().waitFor(routed, 5000), node.c_str());
            QCOMPARE(unit.faults(), QByteArray());
        }
    }

    void faultsAtTheFarEndStopNothing()
    {
        for (const auto &[wire, fault] : {std::pair(Wire::Matrix, sim::Fault::GarbageFirst),
                                          {Wire::Matrix, sim::Fault::Noise},
                                          {Wire::Matrix, sim::Fault::Stuck},
                                          {Wire::Control0, sim::Fault::CutInTwo}}) {
            TestUnit unit(4);
            unit.hardware().inject(wire, fault);
            unit.start();
            QCOMPARE(unit.talk(Wire::Control0, "3x1&4.3?.", 2), QByteArray("OK.3x1&4."));
            QVERIFY(fault == sim::Fault::Stuck || unit.boardShows({3, 1, 1, 3}));
            QCOMPARE(unit.faults(), QByteArray());
        }
    }

    void aStuckBoardStopsNothing()
    {
        TestUnit unit(160);
        unit.hardware().inject(Wire::Matrix, sim::Fault::Stuck);
        unit.start();
        for (int i = 0; i < 30; ++i) {
            unit.hardware().send(Wire::Control0, "\xEB\x90\x0F\xFF" + std::string(4091, '\0'));
            QCOMPARE(unit.receive(Wire::Control0, 7).right(7), QByteArray::fromHex("EB900007000000"));
        }
        // The longest reply: the digits of all outputs, with a separator between them.
        QCOMPARE(unit.talk(Wire::Control1, "160all.160?.", 2).size(), 3 + 4 + (9 + 180 + 183) + 159 + 1);
    }

    void backlight()
    {
        TestUnit unit(4, {{"system/backlight", "4"}});
        unit.start(false);
        QCOMPARE(unit.hardware().files().backlight(), 5);
        const int brightnessOf[][2] = {{0, 0}, {1, 1}, {7, 7}, {8, 7}, {0, 0}, {-3, 7}};
        for (const auto &[level, brightness] : brightnessOf) {
            unit.comm().MxSetBacklight(level);
            QCOMPARE(unit.hardware().files().backlight(), brightness);
            const int power = brightness > 0 ? 1 : 0;
            QVERIFY(unit.hardware().waitFor([&] { return unit.hardware().gpio().level(0) == power; }, 5000));
        }
    }
};

static const RegisteredTest<TestControlPorts> registered;
#include "testcontrolports.moc"
