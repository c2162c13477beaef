#include "eventtext.h"
#include "rows.h"
#include "switchingboard.h"
#include "testregistry.h"

#include <QTest>
#include <utility>

namespace
{
const QByteArray frameA("F00C000000020000FFFFFFFF\r\n");
const QByteArray frameB("F00C00000003000200010000\r\n");
const QByteArray splice = QByteArray::fromHex("EB90001700310403020100000000FFFFFFFF0000008000");
const QByteArray passed = QByteArray::fromHex("EB90000500");

const QString shownA = "switch   input 1 on output 2; input 3 on output 1; outputs 3-4 dark";
const QString shownSplice = "splice   4 words";
const QString shownPassed = "passed   EB 90 00 05 00";
const QString once = "fault    a switch frame came once only";
const QString malformed = "fault    a malformed switch frame of %1 bytes";
const QString stray = "fault    bytes that begin no frame, the first one %1";
const QString cutOff = "fault    a frame is cut off after %1 bytes";

/// A board of four ports, the time as it knows it, and what its observer hears, in words.
struct Bench {
    sim::EventText words;
    QStringList heard;
    sim::SwitchingBoard board{
        4, [this](const sim::WireEvent &event) { heard += QString::fromStdString(words.line(event)); }};
    int64_t now = 1;

    void feed(const QByteArray &bytes)
    {
        board.feed(reinterpret_cast<const uint8_t *>(bytes.constData()), size_t(bytes.size()), now);
    }

    void pause(int64_t us)
    {
        now += us;
        board.idle(now);
    }
};
} // namespace

class TestSwitchingBoard : public QObject
{
    Q_OBJECT

private slots:
    /// Each row, then a good pair.
    void frames_data()
    {
        columns<QByteArray, QStringList>("bytes", "events");
        row("three copies", frameA + frameA + frameA, QStringList{shownA, once});
        row("two copies that differ", frameA + frameB,
            QStringList{"fault    the two copies of a switch frame differ"});
        row("a small letter", "F00C00000002000aFFFFFFFF\r\n", QStringList{malformed.arg(26)});
        row("an output too few", frameA.left(20) + "\r\n" + frameA + frameA,
            QStringList{malformed.arg(22), shownA});
        row("an output too many", frameA.left(24) + "0000\r\n" + frameA + frameA,
            QStringList{"fault    a switch frame goes on after 26 bytes", shownA});
        row("a frame within a frame", frameA.left(10) + passed,
            QStringList{"fault    byte EB within a switch frame", shownPassed});
        row("a frame between the copies", frameA + passed + frameA, QStringList{once, shownPassed, once});
        row("noise first", "xF0EF" + frameA + frameA, QStringList{stray.arg("78"), shownA});
        row("one of each", splice + frameA + frameA + passed, QStringList{shownSplice, shownA, shownPassed});
        row("a wrong last byte", splice.left(22) + '\x01',
            QStringList{"fault    a frame ends in 01 instead of 00"});
        row("too long", QByteArray::fromHex("EB901001"),
            QStringList{"fault    a frame declares a length of 4097"});
    }
    void frames()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, events);
        const QString paired = "switch   input 1 on output 4; input 2 on output 3; "
                               "input 3 on output 2; input 4 on output 1";
        Bench bench;
        bench.feed(bytes);
        bench.pause(2'000'000);
        bench.feed(frameB + frameB);
        QCOMPARE(bench.heard, events + QStringList(paired));
        QCOMPARE(bench.board.routing(), (std::vector<uint16_t>{3, 2, 1, 0}));
    }

    void numbersAndChanges()
    {
        Bench bench;
        bench.feed(splice);
        QCOMPARE(bench.board.spliceFrames().at(0).words,
                 (std::vector<uint32_t>{0x01020304, 0, 0xFFFFFFFF, 0x80000000}));
        for (const QByteArray &frame : {frameA, frameA, QByteArray("F00C00000002009FFFFF009F\r\n")}) {
            bench.feed(frame + frame);
            bench.pause(550'000);
        }
        QCOMPARE(bench.heard, QStringList({shownSplice, shownA, "switch   no change",
                                           "switch   input 160 on outputs 2, 4"}));
    }

    /// 100 ms less than on the wire: the first frame may have been read late.
    void tooEarly()
    {
        const auto faults = [](const QByteArray &first, int distanceMs, const QByteArray &next) {
            Bench bench;
            bench.feed(first);
            bench.pause(distanceMs * 1000);
            bench.feed(next);
            const int early = bench.heard.filter("too early").size();
            return bench.heard.filter("fault").size() == early ? early : -1;
        };
        QCOMPARE(faults(frameA + frameA, 450, frameB + frameB), 0);
        QCOMPARE(faults(frameA + frameA, 449, frameB + frameB), 1);
        QCOMPARE(faults(frameA + frameA, 900, splice), 0);
        QCOMPARE(faults(frameA + frameA, 899, splice), 1);
        QCOMPARE(faults(splice, 900, splice), 0);
        QCOMPARE(faults(splice, 899, splice), 1);
    }

    void gapWithinFrame()
    {
        Bench bench;
        bench.feed(frameA.left(9));
        bench.pause(100'000);
        bench.feed(frameA.mid(9));
        bench.now += 1'000'000; // this side was late; nothing says that the bytes were
        bench.feed(frameA);
        QCOMPARE(bench.heard, QStringList(shownA));
        QCOMPARE(bench.board.switchFrames().at(0).timeUs, qint64(1));
        bench.feed(frameB.left(9));
        bench.pause(100'001);
        QCOMPARE(bench.heard, QStringList({shownA, cutOff.arg(9)}));
    }
};

static const RegisteredTest<TestSwitchingBoard> registered;

#include "testswitchingboard.moc"
