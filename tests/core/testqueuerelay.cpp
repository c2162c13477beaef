#include "mxsite.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <cstring>
#include <sys/msg.h>

namespace
{
struct RawMessage {
    long type;
    unsigned char text[1024];
};

bool sendRequest(const QByteArray &text)
{
    RawMessage message{1, {}};
    std::memcpy(message.text, text.constData(), static_cast<size_t>(text.size()));
    const int queue = msgget(MxSite::requestQueueKey(), 0);
    return msgsnd(queue, &message, static_cast<size_t>(text.size()), 0) == 0;
}

QByteArray counted(quint32 count, const QByteArray &data)
{
    return QByteArray(reinterpret_cast<const char *>(&count), 4) + data;
}

QByteArray passedFrame(int size)
{
    const char header[] = {'\xEB', '\x90', static_cast<char>(size >> 8), static_cast<char>(size)};
    return QByteArray(header, 4) + QByteArray(size - 5, '\x55') + '\0';
}
} // namespace

/// The message queues by which another process talks to the switching board.
class TestQueueRelay : public QObject
{
    Q_OBJECT

private slots:
    void requests_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("written");
        const QByteArray frame = passedFrame(300);
        QTest::newRow("whole frame") << counted(300, frame) << frame;
        QTest::newRow("data behind the count") << counted(300, frame + "more") << frame;
        QTest::newRow("count 0") << counted(0, frame) << QByteArray();
        QTest::newRow("count beyond what came") << counted(400, frame) << frame;
        QTest::newRow("huge count") << counted(0xFFFFFFFF, frame) << frame;
        QTest::newRow("oversize is cut to 512") << counted(600, passedFrame(512) + "cut") << passedFrame(512);
        QTest::newRow("no data") << counted(512, QByteArray()) << QByteArray();
        QTest::newRow("half a count") << QByteArray("\x05\x00", 2) << QByteArray();
        QTest::newRow("nothing at all") << QByteArray() << QByteArray();
    }

    /// Each message followed by a good one, behind which nothing is outstanding.
    void requests()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, written);
        TestUnit unit(4);
        unit.start();
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        const size_t before = unit.hardware().board().bytes().size();
        QVERIFY(sendRequest(text));
        QVERIFY(sendRequest(counted(9, passedFrame(9))));
        const QByteArray expected = written + passedFrame(9);
        const auto since = [&] {
            const std::vector<uint8_t> all = unit.hardware().board().bytes();
            return QByteArray(reinterpret_cast<const char *>(all.data() + before), int(all.size() - before));
        };
        QVERIFY(unit.hardware().waitFor([&] { return since().size() >= expected.size(); }, 5000));
        QCOMPARE(since(), expected);
        QCOMPARE(unit.faults(), QByteArray());
    }

    void answersOfTheBoardNeverPileUp()
    {
        TestUnit unit(4);
        unit.hardware().inject(sim::Fault::MatrixNoise);
        unit.start();
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        for (int i = 0; i < 50; ++i) {
            unit.hardware().send(sim::Wire::Matrix, std::string(4000, 'a'));
            QCOMPARE(unit.talk(sim::Wire::Control0, "9?."), QByteArray("ERR."));
        }
        QCOMPARE(unit.talk(sim::Wire::Control0, "2x3."), QByteArray("OK."));
        QVERIFY(unit.boardShows({1, 1, 2, 1}));
        msqid_ds replies{};
        QCOMPARE(msgctl(msgget(MxSite::replyQueueKey(), 0), IPC_STAT, &replies), 0);
        QCOMPARE(int(replies.msg_qnum), 0);
    }
};

static const RegisteredTest<TestQueueRelay> registered;
#include "testqueuerelay.moc"
