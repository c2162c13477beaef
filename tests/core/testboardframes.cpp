#include "matrixlink.h"
#include "mxsite.h"
#include "queuerelay.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <sys/msg.h>
#include <sys/socket.h>

namespace
{
QByteArray counted(quint32 count, const QByteArray &data)
{
    return QByteArray(reinterpret_cast<const char *>(&count), 4) + data;
}

/// A relay between two queues of its own and a link of which the test holds the board's end.
class RelayBench
{
public:
    RelayBench()
    {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends) != 0) {
            qFatal("no socket");
        }
        m_board.adopt(ends[0]);
        m_link.adopt(ends[1]);
    }
    ~RelayBench()
    {
        ::msgctl(m_requests, IPC_RMID, nullptr);
        ::msgctl(m_replies, IPC_RMID, nullptr);
    }
    RelayBench(const RelayBench &) = delete;
    RelayBench &operator=(const RelayBench &) = delete;

    bool request(const QByteArray &text) const
    {
        const QByteArray message = QByteArray("\1\0\0\0\0\0\0\0", sizeof(long)) + text;
        return ::msgsnd(m_requests, message.constData(), size_t(text.size()), IPC_NOWAIT) == 0;
    }
    void answer(const QByteArray &bytes) const { m_board.write(bytes.constData(), bytes.size()); }
    void step() const { QueueRelay(m_link, m_requests, m_replies).step(); }
    /// What has come to the board, and what of its answers is still on the link.
    QByteArray atBoard() const { return takenFrom(m_board); }
    QByteArray onLink() const { return takenFrom(m_link); }
    int replies() const
    {
        msqid_ds facts{};
        return ::msgctl(m_replies, IPC_STAT, &facts) == 0 ? int(facts.msg_qnum) : -1;
    }

private:
    static QByteArray takenFrom(const MatrixLink &end)
    {
        QByteArray bytes(65536, '\0');
        return bytes.left(qMax(0, end.read(bytes.data(), bytes.size())));
    }

    MatrixLink m_board;
    MatrixLink m_link;
    const int m_requests = ::msgget(IPC_PRIVATE, 0600);
    const int m_replies = ::msgget(IPC_PRIVATE, 0600);
};
} // namespace

/// Frames that others have for the board: over the control ports, and over the queues of another process.
class TestBoardFrames : public QObject
{
    Q_OBJECT

private slots:
    void framesOfBothControlPortsAreAcknowledged()
    {
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QByteArray expected = unit.boardBytes();
        const QByteArray acknowledgement = QByteArray::fromHex("EB900007000000");
        const QByteArray dropped = QByteArray::fromHex("EB90000501");
        const QByteArray longest = QByteArray::fromHex("EB901000") + QByteArray(4092, '\0');
        const QByteArray withText = QByteArray::fromHex("EB9000072E2E00"); // which ends two lines as well
        for (const sim::Wire wire : {sim::Wire::Control0, sim::Wire::Control1}) {
            unit.hardware().send(wire, (dropped + longest + withText).toStdString());
            QCOMPARE(unit.receive(wire, 22), acknowledgement + "ERR.ERR." + acknowledgement);
            expected += longest + withText;
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
    void requestsOfTheQueue()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, written);
        const RelayBench bench;
        QVERIFY(bench.request(text) && bench.request(counted(4, "good")));
        bench.step();
        QCOMPARE(bench.atBoard(), written + "good");
    }

    /// Whoever sends without end holds up nothing else.
    void aStepHasAnEnd()
    {
        const RelayBench bench;
        for (int i = 0; i < QueueRelay::MostPerStep + 1; ++i) {
            QVERIFY(bench.request(counted(1, "x")));
        }
        bench.answer(QByteArray(512 * QueueRelay::MostPerStep + 1, 'a'));
        bench.step();
        QCOMPARE(bench.atBoard(), QByteArray(QueueRelay::MostPerStep, 'x'));
        QCOMPARE(bench.onLink(), QByteArray("a"));
        bench.step();
        QCOMPARE(bench.atBoard(), QByteArray("x"));
        QCOMPARE(bench.replies(), 0);
    }

    /// A control thread that relays.
    void anotherProcessTalksToTheBoard()
    {
        RunningUnit unit(4);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        const QByteArray before = unit.boardBytes();
        const QByteArray frame = QByteArray::fromHex("EB900007000000");
        QVERIFY(sendRequest(counted(7, frame)));
        QVERIFY(unit.hardware().waitFor([&] { return unit.boardBytes() == before + frame; }, 5000));
        QCOMPARE(unit.faults(), QByteArray());
    }
};

static const RegisteredTest<TestBoardFrames> registered;
#include "testboardframes.moc"
