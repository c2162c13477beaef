#include "switchingboard.h"
#include "testregistry.h"

#include <QTest>

namespace
{
constexpr int ports = 4;
constexpr int64_t second = 1'000'000;

const QByteArray frameA("F00C000000020000FFFFFFFF\r\n");
const QByteArray frameB("F00C00000003000200010000\r\n");
const QByteArray splice = QByteArray::fromHex("EB90001700310403020100000000FFFFFFFF0000008000");
const QByteArray passed = QByteArray::fromHex("EB90000500");

const QString once = "a switch frame came once only";
const QString malformed = "a malformed switch frame of %1 bytes";
const QString tooLong = "a switch frame goes on after 26 bytes";
const QString stray = "bytes that begin no frame, the first one %1";

/// A board and the time as it knows it.
struct Bench {
    sim::SwitchingBoard board{ports};
    int64_t now = second;

    void feed(const QByteArray &bytes, int pieces)
    {
        for (int at = 0; at < bytes.size(); at += pieces) {
            const QByteArray piece = bytes.mid(at, pieces);
            board.feed(reinterpret_cast<const uint8_t *>(piece.constData()),
                       static_cast<size_t>(piece.size()), now);
        }
    }

    void pause(int64_t us)
    {
        now += us;
        board.idle(now);
    }

    QStringList faults() const
    {
        QStringList texts;
        for (const sim::WireFault &fault : board.faults()) {
            texts += QString::fromStdString(fault.text);
        }
        return texts;
    }
};
} // namespace

class TestSwitchingBoard : public QObject
{
    Q_OBJECT

private slots:
    void frames_data();
    void frames();
    void framesCarryTheirNumbers();
    void distances_data();
    void distances();
    void gapWithinFrame();
    void observerHearsInOrder();
    void rawBytesAreBounded();
};

void TestSwitchingBoard::frames_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<int>("switches");
    QTest::addColumn<int>("splices");
    QTest::addColumn<int>("passes");

    const auto row = [](const char *name, const QByteArray &bytes, const QStringList &faults,
                        int switches = 0, int splices = 0, int passes = 0) {
        QTest::newRow(name) << bytes << faults << switches << splices << passes;
    };
    const QByteArray lowerDigit("F00C00000002000aFFFFFFFF\r\n");
    const QByteArray groupMissing("F00C000000020000FFFF\r\n");
    const QByteArray groupTooMany("F00C000000020000FFFFFFFF0000\r\n");
    const QByteArray noReturn("F00C000000020000FFFFFFFF\n");

    row("pair", frameA + frameA, {}, 1);
    row("one copy", frameA, {once});
    row("three copies", frameA + frameA + frameA, {once}, 1);
    row("copies differ", frameA + frameB, {"the two copies of a switch frame differ"});
    row("second copy malformed", frameA + noReturn, {malformed.arg(25)});
    row("lower-case digit", lowerDigit, {malformed.arg(26)});
    row("lower-case prefix", "f" + frameA.mid(1), {stray.arg("66")});
    row("group missing", groupMissing + frameA + frameA, {malformed.arg(22)}, 1);
    row("group too many", groupTooMany + frameA + frameA, {tooLong}, 1);
    row("no carriage return", noReturn, {malformed.arg(25)});
    row("blank for carriage return", frameA.left(24) + " \n", {malformed.arg(26)});
    row("no line feed", frameA.left(25) + frameA, {tooLong});
    row("switch frame cut off", frameA.left(10), {"a frame is cut off after 10 bytes"});
    row("switch frame cut off in its prefix", frameA + frameA.left(3), {"a frame is cut off after 3 bytes"});
    row("binary frame in a switch frame", frameA.left(10) + passed, {"byte EB within a switch frame"}, 0, 0,
        1);
    row("frame between the copies", frameA + passed + frameA, {once, once}, 0, 0, 1);
    row("garbage between the copies", frameA + "x" + frameA, {once, stray.arg("78"), once});
    row("garbage", "xyz\xFF", {stray.arg("78")});
    row("garbage, then a pair", "xF0EF" + frameA + frameA, {stray.arg("78")}, 1);
    row("two runs of garbage", "x" + passed + "y", {stray.arg("78"), stray.arg("79")}, 0, 0, 1);

    row("splice", splice, {}, 0, 1);
    row("splice ends in 01", splice.left(22) + '\x01', {"a frame ends in 01 instead of 00"});
    row("splice words, other size", QByteArray::fromHex("EB90000B00310000000000"), {}, 0, 0, 1);
    row("splice size, other command", splice.left(5) + '\x32' + splice.mid(6), {}, 0, 0, 1);
    row("shortest", passed, {}, 0, 0, 1);
    row("shortest ends in 01", QByteArray::fromHex("EB90000501"), {"a frame ends in 01 instead of 00"});
    row("length 0", QByteArray::fromHex("EB900000"), {"a frame declares a length of 0"});
    row("length 4", QByteArray::fromHex("EB900004"), {"a frame declares a length of 4"});
    row("length 4096", QByteArray::fromHex("EB901000") + QByteArray(4092, '\0'), {}, 0, 0, 1);
    row("length 4097", QByteArray::fromHex("EB901001"), {"a frame declares a length of 4097"});
    row("binary frame cut off", splice.left(22), {"a frame is cut off after 22 bytes"});
    row("EB twice", "\xEB" + passed, {stray.arg("EB")}, 0, 0, 1);
    row("two binary frames", passed + passed, {}, 0, 0, 2);
}

/// Each row alone, then a good pair; then all of it once more after garbage; whole and byte by byte.
void TestSwitchingBoard::frames()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, faults);
    QFETCH(int, switches);
    QFETCH(int, splices);
    QFETCH(int, passes);

    for (const bool afterGarbage : {false, true}) {
        for (const int pieces : {1, 1 << 16}) {
            Bench bench;
            if (afterGarbage) {
                bench.feed("\x01\x46\x30\xEB", pieces);
                bench.pause(second);
                // What looks like the start of a frame counts as one that is cut off.
                QCOMPARE(bench.faults(), QStringList({stray.arg("01"), "a frame is cut off after 1 bytes"}));
            }
            bench.feed(bytes, pieces);
            bench.pause(2 * second);
            QCOMPARE(bench.faults().mid(afterGarbage ? 2 : 0), faults);
            QCOMPARE(static_cast<int>(bench.board.switchFrames().size()), switches);
            QCOMPARE(static_cast<int>(bench.board.spliceFrames().size()), splices);
            QCOMPARE(static_cast<int>(bench.board.passedFrames().size()), passes);

            bench.feed(frameB + frameB, pieces);
            QCOMPARE(bench.board.routing(), (std::vector<uint16_t>{3, 2, 1, 0}));
            QCOMPARE(bench.faults().size(), faults.size() + (afterGarbage ? 2 : 0));
        }
    }
}

void TestSwitchingBoard::framesCarryTheirNumbers()
{
    Bench bench;
    QCOMPARE(bench.board.routing(), std::vector<uint16_t>(4, 0xFFFF));
    bench.feed(frameA.left(5), 100);
    bench.now += 3;
    bench.feed(frameA.mid(5) + frameA, 100);
    QCOMPARE(bench.board.switchFrames().at(0).timeUs, second);
    QCOMPARE(bench.board.switchFrames().at(0).inputs, (std::vector<uint16_t>{2, 0, 0xFFFF, 0xFFFF}));

    bench.feed(splice, 100);
    QCOMPARE(bench.board.spliceFrames().at(0).words,
             (std::vector<uint32_t>{0x01020304, 0, 0xFFFFFFFF, 0x80000000}));
}

void TestSwitchingBoard::distances_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("next");
    QTest::addColumn<int>("distanceMs");
    QTest::addColumn<bool>("tooEarly");

    // 100 ms less than on the wire: the first frame may have been read late.
    QTest::newRow("switch after switch") << frameA << frameB << 450 << false;
    QTest::newRow("switch too early after switch") << frameA << frameB << 449 << true;
    QTest::newRow("splice after switch") << frameA << splice << 900 << false;
    QTest::newRow("splice too early after switch") << frameA << splice << 899 << true;
    QTest::newRow("splice after splice") << splice << splice << 900 << false;
    QTest::newRow("splice too early after splice") << splice << splice << 899 << true;
    QTest::newRow("switch right after splice") << splice << frameA << 20 << false;
    QTest::newRow("passed right after switch") << frameA << passed << 20 << false;
}

void TestSwitchingBoard::distances()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, next);
    QFETCH(int, distanceMs);
    QFETCH(bool, tooEarly);

    // The second copy of a switch frame takes no part in it.
    constexpr int copyMs = 20;
    Bench bench;
    bench.feed(first, 100);
    bench.pause(copyMs * 1000);
    if (first == frameA) {
        bench.feed(first, 100);
    }
    bench.pause((distanceMs - copyMs) * 1000);
    bench.feed(next, 100);
    bench.pause(copyMs * 1000);
    if (next.startsWith('F')) {
        bench.feed(next, 100);
    }
    QCOMPARE(bench.faults().size(), tooEarly ? 1 : 0);
    if (tooEarly) {
        QVERIFY2(bench.faults().at(0).contains("too early"), qPrintable(bench.faults().at(0)));
    }
}

void TestSwitchingBoard::gapWithinFrame()
{
    Bench bench;
    bench.feed(frameA.left(9), 100);
    bench.pause(100'000);
    bench.feed(frameA.mid(9), 100);
    bench.now += second; // this side was late; nothing says that the bytes were
    bench.feed(frameA, 100);
    QCOMPARE(bench.faults(), QStringList());
    QCOMPARE(bench.board.switchFrames().size(), size_t(1));

    bench.feed(frameB.left(9), 100);
    bench.pause(100'001);
    QCOMPARE(bench.faults(), QStringList("a frame is cut off after 9 bytes"));
}

void TestSwitchingBoard::observerHearsInOrder()
{
    std::vector<size_t> kinds;
    sim::SwitchingBoard board(ports, [&](const sim::WireEvent &event) { kinds.push_back(event.index()); });
    const QByteArray bytes = splice + frameA + frameA + passed + "x";
    board.feed(reinterpret_cast<const uint8_t *>(bytes.constData()), static_cast<size_t>(bytes.size()),
               second);
    // Splice, switch, passed, fault: their places in WireEvent.
    QCOMPARE(kinds, (std::vector<size_t>{1, 0, 2, 4}));
}

void TestSwitchingBoard::rawBytesAreBounded()
{
    Bench bench;
    bench.feed("first", 5);
    bench.feed(QByteArray((1 << 20) - 1, 'x') + "y", 1 << 16);
    const std::vector<uint8_t> bytes = bench.board.bytes();
    QCOMPARE(bytes.size(), size_t(1 << 20));
    QCOMPARE(bytes.front(), uint8_t('x'));
    QCOMPARE(bytes.back(), uint8_t('y'));
}

static const RegisteredTest<TestSwitchingBoard> registered;

#include "testswitchingboard.moc"
