#include "filedescriptor.h"
#include "gpio.h"
#include "matrixlink.h"
#include "matrixsender.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace
{
/// A sender on a pipe, stepped by a clock of the test's own, and the board at the pipe's other end.
class SenderBench
{
public:
    explicit SenderBench(int ports)
        : board(ports)
        , m_unit(ports)
    {
        shm.port = ports;
        int ends[2];
        if (::pipe2(ends, O_NONBLOCK | O_CLOEXEC) != 0) {
            qFatal("no pipe");
        }
        m_boardEnd.reset(ends[0]);
        link.adopt(ends[1]);
        gpio.open();
        m_sender.emplace(shm, link, gpio);
    }

    /// Steps in each ms of the test's clock, up to `until`.
    void stepUntil(quint32 until)
    {
        for (; now != until; ++now) {
            step();
        }
    }
    void step()
    {
        m_sender->step(now);
        unsigned char bytes[4096];
        const auto count = ::read(m_boardEnd.get(), bytes, sizeof bytes);
        if (count > 0) {
            board.feed(bytes, static_cast<size_t>(count), int64_t(now) * 1000);
            arrivals.push_back(now);
        }
        board.idle(int64_t(now) * 1000);
    }
    /// What was written to the lines.
    QByteArray lines()
    {
        QByteArray text;
        for (const sim::LineWrite &write : m_unit.hardware().gpio().history()) {
            text += QByteArray::number(write.line) + "=" + QByteArray::number(write.level) + " ";
        }
        return text;
    }
    TestUnit &unit() { return m_unit; }

    MxShm shm{};
    sim::SwitchingBoard board;
    std::vector<quint32> arrivals; ///< times at which bytes came
    quint32 now = 5000;
    MatrixLink link;
    Gpio gpio;

private:
    TestUnit m_unit;
    FileDescriptor m_boardEnd;
    std::optional<MatrixSender> m_sender;
};

using Times = std::vector<quint32>;
} // namespace

/// When what leaves for the switching board. Times are of a clock that the test moves.
class TestSender : public QObject
{
    Q_OBJECT

private slots:
    void largestFrames()
    {
        SenderBench bench(160);
        Routing::allToAll(bench.shm);
        bench.step();
        bench.shm.spliceData[159] = 0xA1B2C3D4;
        bench.shm.splicePending.raise();
        bench.stepUntil(7000);
        QCOMPARE(int(bench.board.bytes().size()), 2 * 650 + 647);
        QCOMPARE(bench.board.spliceFrames().at(0).words.at(159), 0xA1B2C3D4U);
        QVERIFY(bench.board.faults().empty());
    }

    void changesWithinTheHoldOffAreOneFrame()
    {
        SenderBench bench(4);
        bench.stepUntil(5100);
        bench.shm.map[1] = 2;
        bench.stepUntil(5549);
        bench.shm.map[2] = 3;
        bench.stepUntil(7000);
        QCOMPARE(bench.arrivals, (Times{5000, 5550}));
        QCOMPARE(bench.board.routing(), (std::vector<uint16_t>{0, 2, 3, 0}));
        QCOMPARE(bench.unit().fileContent("/home/app/data/scene0"), QByteArray::fromHex("0000020003000000"));
        // Idle again: the next change leaves at once. Undone within the hold-off it leaves no frame at all.
        bench.shm.map[3] = 1;
        bench.stepUntil(7100);
        bench.shm.map[3] = 0;
        bench.stepUntil(7200);
        bench.shm.map[3] = 1;
        bench.stepUntil(9000);
        QCOMPARE(bench.arrivals, (Times{5000, 5550, 7000}));
        QVERIFY(bench.board.faults().empty());
    }

    void aSpliceWaitsAndHoldsBackTheSwitch()
    {
        SenderBench bench(4);
        bench.stepUntil(5300);
        bench.shm.spliceData[0] = 0x01020304;
        bench.shm.splicePending.raise();
        bench.stepUntil(5700);
        bench.shm.map[1] = 2;
        bench.stepUntil(8000);
        // Both frames on the same pass, 1000 ms after the first frame.
        QCOMPARE(bench.arrivals, (Times{5000, 6000}));
        QCOMPARE(bench.board.spliceFrames().at(0).words, (std::vector<uint32_t>{0x01020304, 0, 0, 0}));
        QCOMPARE(int(bench.board.switchFrames().size()), 2);
        QVERIFY(bench.board.faults().empty());
        QVERIFY(!bench.shm.splicePending.raised());
        bench.now = 6900;
        bench.shm.splicePending.raise();
        bench.stepUntil(8000);
        QCOMPARE(bench.arrivals, (Times{5000, 6000, 7000}));
    }

    void aWrappedClockDoesNotStopTheSender()
    {
        SenderBench bench(4);
        bench.now = 0xFFFFFF00U;
        bench.stepUntil(0xFFFFFFF0U);
        bench.shm.map[1] = 2;
        bench.shm.splicePending.raise();
        bench.now = 0x10;
        bench.stepUntil(0x10 + 200);
        QCOMPARE(int(bench.board.switchFrames().size()), 2);
        QCOMPARE(int(bench.board.spliceFrames().size()), 1);
    }

    void linesThatRiseWithAFrame_data()
    {
        columns<int, bool, QByteArray>("beep", "splice", "writes");
        row("switch", 0, false, "8=1 8=0 ");
        row("switch with buzzer", 1, false, "4=1 8=1 4=0 8=0 ");
        row("splice", 0, true, "");
        row("splice with buzzer", 1, true, "4=1 4=0 ");
    }
    void linesThatRiseWithAFrame()
    {
        QFETCH(int, beep);
        QFETCH(bool, splice);
        QFETCH(QByteArray, writes);
        SenderBench bench(4);
        if (splice) {
            bench.shm.map[0] = MxNoInput;
            bench.shm.splicePending.raise();
        }
        bench.shm.beep = beep;
        bench.step();
        bench.gpio.write(10, 1); // a mark behind which nothing is outstanding
        QVERIFY(bench.unit().hardware().waitFor([&] { return bench.lines() == writes + "10=1 "; }, 5000));
    }
};

static const RegisteredTest<TestSender> registered;
#include "testsender.moc"
