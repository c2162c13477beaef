#include "mxsite.h"
#include "testregistry.h"
#include "testunit.h"

#include <QElapsedTimer>
#include <QTest>
#include <atomic>
#include <sys/msg.h>
#include <thread>

namespace
{
QByteArray counted(quint32 count, const QByteArray &data)
{
    return QByteArray(reinterpret_cast<const char *>(&count), 4) + data;
}

QByteArray frame(int length, char last = 0, char filling = '\x55')
{
    QByteArray bytes("\xEB\x90");
    bytes += static_cast<char>(length >> 8);
    bytes += static_cast<char>(length);
    return bytes + QByteArray(length - 5, filling) + last;
}
} // namespace

/// Frames that others have for the board: over the control ports, and over the queues of another process.
class TestBoardFrames : public QObject
{
    Q_OBJECT

private slots:
    /// Each row after garbage and before a good frame, which must come through.
    void framesOfAControlPortAreAcknowledged()
    {
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QByteArray expected = unit.boardBytes();
        const QByteArray acknowledgement = QByteArray::fromHex("EB900007000000");
        const QByteArray garbage = QByteArray::fromHex("9000EB00EB9010FF");
        const QByteArray good = frame(7);
        const QByteArray dropped;
        for (const auto &[name, bytes, found] :
             {std::tuple("shortest whole frame", frame(5), frame(5)),
              {"length 4096", frame(4096), frame(4096)},
              {"end mark missing", frame(5, 1), dropped},
              {"length 4097", QByteArray::fromHex("EB901001"), dropped},
              {"length 0", QByteArray::fromHex("EB90000000"), dropped},
              {"length 3 ends in its high byte", QByteArray::fromHex("EB900003FF"),
               QByteArray::fromHex("EB9000")},
              {"length 4 ends in its low byte", QByteArray::fromHex("EB90000400"), dropped},
              {"EB EB 90 does not synchronise", QByteArray::fromHex("EBEB90000500"), dropped}}) {
            for (const sim::Wire wire : {sim::Wire::Control0, sim::Wire::Control1}) {
                unit.hardware().send(wire, (garbage + bytes + good).toStdString());
                const QByteArray replies = acknowledgement.repeated(found.isEmpty() ? 1 : 2);
                QVERIFY2(unit.receive(wire, replies.size()) == replies, name);
                expected += found + good;
                QVERIFY2(unit.hardware().waitFor([&] { return unit.boardBytes() == expected; }, 5000), name);
            }
        }
        // The bytes of a frame are text as well: "." in it ends a line, which is an error.
        unit.hardware().send(sim::Wire::Control0, frame(7, 0, '.').toStdString());
        QCOMPARE(unit.receive(sim::Wire::Control0, 15), "ERR.ERR." + acknowledgement);
    }

    /// Each message followed by a good one, behind which nothing is outstanding.
    void requestsOfTheQueue()
    {
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QByteArray expected = unit.boardBytes();
        const QByteArray whole = frame(300);
        for (const auto &[name, text, written] :
             {std::tuple("whole frame", counted(300, whole), whole),
              {"data behind the count", counted(300, whole + "more"), whole},
              {"count 0", counted(0, whole), QByteArray()},
              {"huge count", counted(0xFFFFFFFF, whole), whole},
              {"oversize is cut to 512", counted(600, frame(512) + "cut"), frame(512)},
              {"no data", counted(512, QByteArray()), QByteArray()},
              {"half a count", QByteArray("\x05\x00", 2), QByteArray()}}) {
            QVERIFY(sendRequest(text));
            QVERIFY(sendRequest(counted(9, frame(9))));
            expected += written + frame(9);
            QVERIFY2(
                unit.hardware().waitFor([&] { return unit.boardBytes().size() >= expected.size(); }, 5000),
                name);
            QVERIFY2(unit.boardBytes() == expected, name);
        }
        QCOMPARE(unit.faults(), QByteArray());
    }

    void aFloodOfRequestsHoldsUpNoReply()
    {
        RunningUnit unit(4);
        std::atomic<bool> ended{false};
        const auto flood = [&] {
            while (!ended && sendRequest(counted(1, "x"))) {
            }
        };
        std::thread first(flood);
        std::thread second(flood);
        qint64 longest = 0;
        for (int i = 0; i < 20; ++i) {
            QElapsedTimer elapsed;
            elapsed.start();
            unit.talk(sim::Wire::Control0, "9?.");
            longest = qMax(longest, elapsed.elapsed());
        }
        ended = true;
        first.join();
        second.join();
        QVERIFY2(longest < 300, QByteArray::number(longest));
    }

    void answersOfTheBoardNeverPileUp()
    {
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        for (int i = 0; i < 50; ++i) {
            unit.hardware().send(sim::Wire::Matrix, std::string(4000, 'a'));
            QCOMPARE(unit.talk(sim::Wire::Control0, "9?."), QByteArray("ERR."));
        }
        msqid_ds replies{};
        QCOMPARE(msgctl(msgget(MxSite::replyQueueKey(), 0), IPC_STAT, &replies), 0);
        QCOMPARE(int(replies.msg_qnum), 0);
    }
};

static const RegisteredTest<TestBoardFrames> registered;
#include "testboardframes.moc"
