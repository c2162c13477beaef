#include "bench.h"
#include "rows.h"
#include "switchingboard.h"
#include "testregistry.h"

#include <QTest>

namespace
{
const QByteArray frameA("F00C000000020000FFFFFFFF\r\n");
const QByteArray frameB("F00C00000003000200010000\r\n");
const QByteArray last("F00C00000002009FFFFF009F\r\n");
const QByteArray splice = QByteArray::fromHex("EB90001700310403020100000000FFFFFFFF0000008000");
const QByteArray passed = QByteArray::fromHex("EB90000500");

const QString shownA = "switch   input 1 on output 2; input 3 on output 1; outputs 3-4 dark";
const QString shownB =
    "switch   input 1 on output 4; input 2 on output 3; input 3 on output 2; input 4 on output 1";
const QString shownSplice = "splice   4 words";
const QString shownPassed = "passed   EB 90 00 05 00";
const QString once = "fault    a switch frame came once only";
const QString malformed = "fault    a malformed switch frame of %1 bytes";
} // namespace

class TestSwitchingBoard : public QObject
{
    Q_OBJECT

private slots:
    /// What a board of four ports gets before a pause and after it.
    void frames_data()
    {
        columns<QByteArray, int, QByteArray, QStringList>("before", "pauseMs", "after", "events");
        const auto good = [](const char *name, const QByteArray &before, const QStringList &events) {
            row(name, before, 2000, frameB + frameB, events + QStringList(shownB));
        };
        good("three copies", frameA + frameA + frameA, {shownA, once});
        good("two copies that differ", frameA + frameB, {"fault    the two copies of a switch frame differ"});
        good("a small letter", "F00C00000002000aFFFFFFFF\r\n", {malformed.arg(26)});
        good("an output too few", frameA.left(20) + "\r\n" + frameA + frameA, {malformed.arg(22), shownA});
        good("an output too many", frameA.left(24) + "0000\r\n" + frameA + frameA,
             {"fault    a switch frame goes on after 26 bytes", shownA});
        good("a frame within a frame", frameA.left(10) + passed,
             {"fault    byte EB within a switch frame", shownPassed});
        good("a frame between the copies", frameA + passed + frameA, {once, shownPassed, once});
        good("noise first", "xF0EF" + frameA + frameA,
             {"fault    bytes that begin no frame, the first one 78", shownA});
        good("one of each", splice + frameA + frameA + passed, {shownSplice, shownA, shownPassed});
        good("a wrong last byte", splice.left(22) + '\x01', {"fault    a frame ends in 01 instead of 00"});
        good("too long", QByteArray::fromHex("EB901001"), {"fault    a frame declares a length of 4097"});
        good("cut off", frameA.left(9), {"fault    a frame is cut off after 9 bytes"});
        row("a gap", frameA.left(9), 100, frameA.mid(9) + frameA, QStringList(shownA));
        row("no change", frameA + frameA, 550, frameA + frameA, QStringList{shownA, "switch   no change"});
        row("the last input", frameA + frameA, 550, last + last,
            QStringList{shownA, "switch   input 160 on outputs 2, 4"});
        // 100 ms less than on the wire: the first frame may have been read late.
        row("in time", frameA + frameA, 450, frameB + frameB, QStringList{shownA, shownB});
        row("too early", frameA + frameA, 449, frameB + frameB,
            QStringList{shownA, "fault    a switch frame too early, after 449 ms", shownB});
        const QString early = "fault    a splice frame too early, after 899 ms";
        row("a splice in time", frameA + frameA, 900, splice, QStringList{shownA, shownSplice});
        row("a splice too early", frameA + frameA, 899, splice, QStringList{shownA, early, shownSplice});
        row("splice after splice", splice, 899, splice, QStringList{shownSplice, early, shownSplice});
    }
    void frames()
    {
        QFETCH(QByteArray, before);
        QFETCH(int, pauseMs);
        QFETCH(QByteArray, after);
        QFETCH(QStringList, events);
        Bench<sim::SwitchingBoard> board(4);
        board.feed(before);
        board.end.idle(pauseMs * 1000);
        board.feed(after, pauseMs * 1000);
        QCOMPARE(board.heard, events);
    }
};

static const RegisteredTest<TestSwitchingBoard> registered;

#include "testswitchingboard.moc"
