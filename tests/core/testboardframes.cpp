#include "matrixlink.h"
#include "mxsite.h"
#include "queuerelay.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <sys/msg.h>

using sim::Wire;

namespace
{
QByteArray counted(quint32 count, const QByteArray &data)
{
    return QByteArray(reinterpret_cast<const char *>(&count), 4) + data;
}

int messagesIn(int queue)
{
    msqid_ds facts{};
    return ::msgctl(queue, IPC_STAT, &facts) == 0 ? int(facts.msg_qnum) : -1;
}
} // namespace

/// Frames that others have for the board: over the control ports, and over the queues of another process.
class TestBoardFrames : public QObject
{
    Q_OBJECT

private slots:
    void framesOfTheControlPorts_data()
    {
        columns<QByteArray, QByteArray, QByteArray>("bytes", "found", "replies");
        const auto frame = [](const QByteArray &bytes, const QByteArray &text = QByteArray()) {
            row(bytes.left(16).toHex(), bytes, bytes, text + QByteArray::fromHex("EB900007000000"));
        };
        frame(QByteArray::fromHex("EB90000500")); // the shortest whole one
        frame(QByteArray::fromHex("EB90000AEB9000050000"));
        frame(QByteArray::fromHex("EB901000") + QByteArray(4092, '\0')); // the longest
        frame(QByteArray::fromHex("EB9000072E2E00"), "ERR.ERR.");        // which ends two lines as well
        row("end mark missing", QByteArray::fromHex("EB90000501"), "", "");
        row("length 4097", QByteArray::fromHex("EB901001"), "", "");
        row("lengths that end within the length",
            QByteArray::fromHex("EB90000000 EB90000100 EB90000200 EB900003FF EB90000400"),
            QByteArray::fromHex("EB9000"), QByteArray::fromHex("EB900007000000"));
        row("EB EB 90 does not synchronise", QByteArray::fromHex("EBEB90000500"), "", "");
    }
    /// Each after garbage, and before a good frame, which must come through.
    void framesOfTheControlPorts()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, found);
        QFETCH(QByteArray, replies);
        const QByteArray good = QByteArray::fromHex("EB90000700AB00");
        replies += QByteArray::fromHex("EB900007000000");
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QByteArray expected = unit.boardBytes();
        for (const Wire wire : {Wire::Control0, Wire::Control1}) {
            unit.hardware().send(wire,
                                 (QByteArray::fromHex("9000EB00EB9010FF") + bytes + good).toStdString());
            QCOMPARE(unit.receive(wire, replies.size()), replies);
            expected += found + good;
            QVERIFY(unit.hardware().waitFor([&] { return unit.boardBytes() == expected; }, 5000));
        }
    }

    void requestsOfTheQueue_data()
    {
        columns<QByteArray, QByteArray>("text", "written");
        const QByteArray data(300, 'd');
        row("whole frame", counted(300, data), data);
        row("data behind the count", counted(300, data + "more"), data);
        row("count 0", counted(0, data), "");
        row("count beyond what came", counted(301, data), data);
        row("huge count", counted(0xFFFFFFFF, data), data);
        row("oversize is cut to 512", counted(600, QByteArray(600, 'd')), QByteArray(512, 'd'));
        row("no data", counted(512, QByteArray()), "");
        row("half a count", QByteArray("\x05\x00", 2), "");
        row("nothing at all", QByteArray(), "");
    }
    /// What the board answers is for nobody.
    void requestsOfTheQueue()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, written);
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        const QByteArray before = unit.boardBytes();
        unit.hardware().send(Wire::Matrix, "answer");
        QVERIFY(sendRequest(text) && sendRequest(counted(4, "good")));
        QVERIFY(
            unit.hardware().waitFor([&] { return unit.boardBytes() == before + written + "good"; }, 5000));
        QCOMPARE(messagesIn(::msgget(MxSite::replyQueueKey(), 0)), 0);
    }

    /// Whoever sends without end holds up nothing else.
    void aStepHasAnEnd()
    {
        TestUnit unit(4);
        unit.start(false);
        for (int i = 0; i < QueueRelay::MostPerStep + 1; ++i) {
            QVERIFY(sendRequest(counted(1, "x")));
        }
        const MatrixLink none;
        const int queue = ::msgget(MxSite::requestQueueKey(), 0);
        QueueRelay(none, queue, queue).step();
        QCOMPARE(messagesIn(queue), 1);
    }
};

static const RegisteredTest<TestBoardFrames> registered;
#include "testboardframes.moc"
