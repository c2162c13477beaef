#include "testregistry.h"
#include "testunit.h"

#include <QTest>

using sim::Wire;

/// The serial links on real terminals: their set-up, commands, and frames for the board.
class TestControlPorts : public QObject
{
    Q_OBJECT

private slots:
    void setUp_data()
    {
        QTest::addColumn<int>("baudrate");
        QTest::addColumn<int>("speed");
        QTest::newRow("300") << 300 << int(B300);
        QTest::newRow("accepted but unknown to the driver") << 96000 << int(B115200);
        QTest::newRow("missing") << 0 << int(B115200);
    }

    void setUp()
    {
        QFETCH(int, baudrate);
        QFETCH(int, speed);
        TestUnit unit(4, {{"system/baudrate", std::to_string(baudrate)}});
        const tcflag_t sizeAndParity = unit.hardware().attributes(Wire::Control0).c_cflag & ~tcflag_t(CBAUD);
        unit.start(false);
        for (const Wire wire : {Wire::Control0, Wire::Control1}) {
            const termios set = unit.hardware().attributes(wire);
            QCOMPARE(int(cfgetospeed(&set)), speed);
            QCOMPARE(int(cfgetispeed(&set)), speed);
            QCOMPARE(set.c_iflag, tcflag_t(IGNBRK | IGNPAR));
            QCOMPARE(set.c_oflag, tcflag_t(0));
            QCOMPARE(set.c_lflag & (ICANON | ECHO | ISIG), tcflag_t(0));
            QCOMPARE(set.c_cflag & ~tcflag_t(CBAUD), sizeAndParity);
            QCOMPARE(int(set.c_cc[VMIN]), 0);
            QCOMPARE(int(set.c_cc[VTIME]), 0);
        }
        const termios matrix = unit.hardware().attributes(Wire::Matrix);
        QCOMPARE(int(cfgetospeed(&matrix)), int(B115200));
    }

    void bothPortsTalkAtOnce()
    {
        TestUnit unit(8);
        unit.start();
        // A line cut in two on one port while the other is busy: neither mixes with the other.
        unit.hardware().send(Wire::Control0, "3x1");
        QCOMPARE(unit.talk(Wire::Control1, "5x2.7?.", 2), QByteArray("OK.7x."));
        QCOMPARE(unit.talk(Wire::Control0, "&4.3?.", 2), QByteArray("OK.3x1&4."));
        QCOMPARE(unit.talk(Wire::Control0, "5X6!bad$..", 4), QByteArray("OK.ERR.ERR.ERR."));
        QVERIFY(unit.boardShows({3, 5, 1, 3, 1, 5, 1, 1}));
        QCOMPARE(unit.faults(), QByteArray());
    }

    void temperature_data()
    {
        QTest::addColumn<QByteArray>("millidegrees");
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("usual") << QByteArray("45123\n") << QByteArray("temp=45.");
        QTest::newRow("empty") << QByteArray() << QByteArray("temp=.");
        QTest::newRow("long") << QByteArray(1000, '3') << QByteArray("temp=33.");
    }

    void temperature()
    {
        QFETCH(QByteArray, millidegrees);
        QFETCH(QByteArray, reply);
        TestUnit unit(4);
        unit.start();
        unit.hardware().setTemperature(millidegrees.toStdString());
        QCOMPARE(unit.talk(Wire::Control1, "temp."), reply);
    }

    void framesGoToTheBoardAndAreAcknowledged()
    {
        TestUnit unit(4);
        unit.start();
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        const QByteArray acknowledgement = QByteArray::fromHex("EB900007000000");
        const QByteArray frame = QByteArray::fromHex("EB900009414243") + QByteArray(2, '\0');
        for (const Wire wire : {Wire::Control0, Wire::Control1}) {
            unit.hardware().send(wire, frame.toStdString());
            QCOMPARE(unit.receive(wire, 7), acknowledgement);
        }
        // The bytes of a frame are text as well: "." in it ends a line, which is an error.
        const QByteArray withDot = QByteArray::fromHex("EB9000072E4100");
        unit.hardware().send(Wire::Control0, withDot.toStdString());
        QCOMPARE(unit.receive(Wire::Control0, 11), "ERR." + acknowledgement);
        QVERIFY(unit.hardware().waitFor([&] { return unit.hardware().board().passedFrames().size() == 3; },
                                        5000));
        const auto passed = unit.hardware().board().passedFrames();
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(passed[1].bytes.data()), 9), frame);
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(passed[2].bytes.data()), 7), withDot);
        QCOMPARE(unit.faults(), QByteArray());
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
        QCOMPARE(unit.talk(Wire::Control0, "", 0), QByteArray());
        unit.shm().baudrate = 115200;
        QVERIFY(unit.boardShows({1, 3, 1, 4}));
    }

    void missingDevices_data()
    {
        QTest::addColumn<int>("wire");
        for (const Wire wire : sim::allWires) {
            QTest::newRow(QByteArray::number(int(wire)).constData()) << int(wire);
        }
    }

    /// The unit lives on with each device missing in turn, and a folder in its place does no more harm.
    void missingDevices()
    {
        QFETCH(int, wire);
        for (const bool folder : {false, true}) {
            TestUnit unit(4);
            const std::string node = unit.hardware().path(Wire(wire));
            unit.hardware().unplug(Wire(wire));
            if (folder) {
                unit.makeFolder(node.c_str() + unit.root().size());
            }
            unit.start();
            unit.comm().MxCmdOneToOne(2, 1);
            unit.comm().MxSetBacklight(3);
            QCOMPARE(unit.hardware().backlight(), 3);
            for (const Wire other : {Wire::Control0, Wire::Control1}) {
                if (int(other) != wire) {
                    QCOMPARE(unit.talk(other, "4x4."), QByteArray("OK."));
                }
            }
            if (Wire(wire) != Wire::Matrix) {
                QVERIFY(
                    unit.hardware().waitFor([&] { return unit.hardware().board().routing()[1] == 2; }, 5000));
            }
            QCOMPARE(unit.faults(), QByteArray());
        }
    }

    void faultsAtTheFarEndStopNothing()
    {
        for (const sim::Fault fault : sim::allFaults) {
            TestUnit unit(4);
            unit.hardware().inject(fault);
            unit.start();
            QCOMPARE(unit.talk(Wire::Control0, "3x1&4.3?.", 2), QByteArray("OK.3x1&4."));
            QVERIFY(fault == sim::Fault::MatrixStuck || unit.boardShows({3, 1, 1, 3}));
            QCOMPARE(unit.faults(), QByteArray());
        }
    }

    void aStuckBoardStopsNothing()
    {
        TestUnit unit(160);
        unit.hardware().inject(sim::Fault::MatrixStuck);
        unit.start();
        const std::string frame = "\xEB\x90\x0F\xFF" + std::string(4091, '\0');
        for (int i = 0; i < 30; ++i) {
            unit.hardware().send(Wire::Control0, frame);
            QCOMPARE(unit.receive(Wire::Control0, 7).right(7), QByteArray::fromHex("EB900007000000"));
        }
        QCOMPARE(unit.talk(Wire::Control1, "3x1."), QByteArray("OK."));
    }

    void backlight()
    {
        TestUnit unit(4, {{"system/backlight", "4"}});
        unit.start(false);
        QCOMPARE(unit.hardware().backlight(), 5);
        const int brightnessOf[][2] = {{0, 0}, {1, 1}, {7, 7}, {8, 7}, {0, 0}, {-3, 7}};
        for (const auto &[level, brightness] : brightnessOf) {
            unit.comm().MxSetBacklight(level);
            QCOMPARE(unit.hardware().backlight(), brightness);
            const int power = brightness > 0 ? 1 : 0;
            QVERIFY(unit.hardware().waitFor([&] { return unit.hardware().gpio().level(0) == power; }, 5000));
        }
    }
};

static const RegisteredTest<TestControlPorts> registered;
#include "testcontrolports.moc"
