#include "matrixlink.h"
#include "mxsite.h"
#include "queuerelay.h"
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
    void framesOfTheControlPorts()
    {
        const QByteArray frame = QByteArray::fromHex("EB9000072E2E00"); // which ends two lines as well
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QByteArray expected = unit.boardBytes();
        for (const Wire wire : {Wire::Control0, Wire::Control1}) {
            const QByteArray replies = "ERR.ERR." + QByteArray::fromHex("EB900007000000");
            unit.hardware().send(wire, frame.toStdString());
            QCOMPARE(unit.receive(wire, replies.size()), replies);
            expected += frame;
            QVERIFY(unit.hardware().waitFor([&] { return unit.boardBytes() == expected; }, 5000));
        }
    }

    /// What the board answers is for nobody.
    void requestsOfTheQueue()
    {
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        const QByteArray before = unit.boardBytes();
        unit.hardware().send(Wire::Matrix, "answer");
        QVERIFY(sendRequest("") && sendRequest(counted(600, QByteArray(600, 'd'))));
        QVERIFY(unit.hardware().waitFor([&] { return unit.boardBytes() == before + QByteArray(512, 'd'); },
                                        5000));
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
