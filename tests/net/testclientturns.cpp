#include "clients.h"
#include "networkunit.h"
#include "testregistry.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <sys/resource.h>
#include <sys/socket.h>

namespace
{
constexpr qint64 Mebibyte = 1024 * 1024;

/// A client by either transport.
class Client
{
public:
    explicit Client(bool tcp)
        : m_tcp(tcp)
        , m_socket(tcp ? RawSocket::tcp(MxSite::tcpPort()) : RawSocket::udp())
    {
    }
    void send(const QByteArray &bytes) const
    {
        if (m_tcp) {
            m_socket->send(bytes);
        } else {
            m_socket->sendTo(MxSite::udpPort(), bytes);
        }
    }
    QByteArray receive(int count) const { return replies(*m_socket, count); }
    const RawSocket &socket() const { return *m_socket; }

private:
    bool m_tcp;
    Socket m_socket;
};

void transports()
{
    QTest::addColumn<bool>("tcp");
    QTest::newRow("TCP") << true;
    QTest::newRow("UDP") << false;
}
} // namespace

/// What one client's commands may cost the others, and the unit.
class TestClientTurns : public QObject
{
    Q_OBJECT

private slots:
    void nothingWaitsBehindACommandThatBlocks_data() { transports(); }
    void nothingWaitsBehindACommandThatBlocks()
    {
        QFETCH(bool, tcp);
        NetworkUnit unit(8);
        std::vector<std::pair<QByteArray, qint64>> got;
        withClients(1, [&](int) {
            const Client client(tcp);
            QElapsedTimer elapsed;
            elapsed.start();
            client.send("1x2.4x3.>r1.2?.recall2.7x7.7?");
            for (const int count : tcp ? std::vector<int>{2, 2, 3} : std::vector<int>{1, 1, 1, 1, 1, 1, 1}) {
                const QByteArray reply = client.receive(count);
                got.emplace_back(reply, elapsed.elapsed());
            }
        });
        QByteArray all;
        for (const auto &[reply, ms] : got) {
            const int recalls = int(all.count('.')) < 2 ? 0 : int(all.count('.')) < 4 ? 1 : 2;
            QVERIFY2(ms >= recalls * 1000 && ms < recalls * 1000 + 500,
                     reply + " after " + QByteArray::number(ms));
            all += reply;
        }
        QCOMPARE(all, QByteArray("OK.OK.OK.2x.OK.OK.7x7."));
    }

    void aThousandRecallsLeaveOthersTheirTurn_data() { transports(); }
    void aThousandRecallsLeaveOthersTheirTurn()
    {
        QFETCH(bool, tcp);
        NetworkUnit unit(8);
        qint64 longest = 0;
        QElapsedTimer sinceTick;
        qint64 longestTick = 0;
        QTimer ticks;
        connect(&ticks, &QTimer::timeout, [&] { longestTick = qMax(longestTick, sinceTick.restart()); });
        sinceTick.start();
        ticks.start(50);
        withClients(1, [&](int) {
            const Client greedy(tcp);
            greedy.send(QByteArray(">r1.").repeated(1000));
            const Client other(tcp);
            const Client another(!tcp);
            for (int i = 0; i < 2; ++i) {
                QElapsedTimer elapsed;
                elapsed.start();
                other.send("1x1");
                another.send("2x2");
                if (other.receive(1) != "OK." || another.receive(1) != "OK.") {
                    qFatal("no reply");
                }
                longest = qMax(longest, elapsed.elapsed());
            }
        });
        QVERIFY2(longest < 1100, QByteArray::number(longest).constData());
        QVERIFY2(longestTick < 1100, QByteArray::number(longestTick).constData());
    }

    void blockedClientsTakeTurns()
    {
        NetworkUnit unit(8);
        QByteArray second;
        qint64 ms = 0;
        withClients(1, [&](int) {
            const Client first(true);
            first.send(QByteArray(">r1.").repeated(1000));
            first.receive(1);
            const Client other(false);
            QElapsedTimer elapsed;
            elapsed.start();
            other.send(">r2.");
            second = other.receive(1);
            ms = elapsed.elapsed();
        });
        QCOMPARE(second, QByteArray("OK."));
        QVERIFY2(ms < 2500, QByteArray::number(ms).constData());
    }

    void aBlockIsCutOnlyBehindATerminator_data()
    {
        QTest::addColumn<QByteArray>("block");
        QTest::addColumn<int>("ok");
        QTest::addColumn<int>("errors");
        const QByteArray command = "112x33.";
        QTest::newRow("64 KiB and more") << command.repeated(10000) << 10000 << 0;
        QTest::newRow("a megabyte") << command.repeated(150000) << 150000 << 0;
        QTest::newRow("the last without an end") << command.repeated(20000) + "112x33" << 20001 << 0;
        QTest::newRow("a line that is too long") << QByteArray(300000, '1') + "x2.112x33." << 1 << 1;
        QTest::newRow("nothing but one") << QByteArray(300000, '1') << 0 << 1;
    }
    void aBlockIsCutOnlyBehindATerminator()
    {
        QFETCH(QByteArray, block);
        QFETCH(int, ok);
        QFETCH(int, errors);
        NetworkUnit unit(160);
        QByteArray got;
        withClients(1, [&](int) {
            const Client client(true);
            std::thread writer([&] { client.send(block); });
            got = client.receive(ok + errors);
            writer.join();
        });
        QCOMPARE(got.count("OK."), ok);
        QCOMPARE(got.count("ERR."), errors);
        for (int o = 0; o < 160; ++o) {
            QCOMPARE(int(unit.shm().map[o]), o == 32 && ok > 0 ? 111 : 0);
        }
    }

    void halfCloseMeansFinishAnswerThenClose_data()
    {
        QTest::addColumn<QByteArray>("block");
        QTest::addColumn<int>("count");
        QTest::newRow("nothing") << QByteArray() << 0;
        QTest::newRow("one command") << QByteArray("1x2") << 1;
        QTest::newRow("more than fits anywhere") << QByteArray("9?.").repeated(20001) << 20001;
        QTest::newRow("behind a recall") << QByteArray(">r1.1x2.") << 2;
    }
    void halfCloseMeansFinishAnswerThenClose()
    {
        QFETCH(QByteArray, block);
        QFETCH(int, count);
        NetworkUnit unit(160);
        unit.comm().MxCmdOneToAll(8);
        QByteArray got;
        withClients(1, [&](int) {
            const Client client(true);
            std::thread writer([&] {
                client.send(block);
                ::shutdown(client.socket().descriptor(), SHUT_WR);
            });
            got = client.receive(count + 1); // until the unit closes
            writer.join();
        });
        QCOMPARE(got.count('.'), count);
        QVERIFY(!got.contains("ERR."));
    }

    void unitsDoNotAnswerEachOtherForEver()
    {
        NetworkUnit unit(8);
        QByteArray got;
        withClients(1, [&](int) {
            const Client other(false);
            other.send("OK."); // as if another unit had answered us
            QByteArray reply = other.receive(1);
            other.send(reply);
            other.send("8?");
            got = reply + other.receive(1);
        });
        QCOMPARE(got, QByteArray("ERR.8x."));
    }

    void onlySendersWithSomethingLeftAreRemembered()
    {
        NetworkUnit unit(8);
        const qint64 before = heapBytes();
        constexpr int count = QMxUdp::MaxPeers + 50;
        withClients(1, [&](int) {
            for (const char *command : {"1x1", ">r0", ">r1.>r1"}) {
                for (int i = 0; i < count; ++i) {
                    const Client forged(false);
                    forged.send(command);
                }
            }
            const Client honest(false);
            honest.send("8?");
            if (honest.receive(1) != "8x.") {
                qFatal("no reply");
            }
        });
        QVERIFY2(unit.udp().peerCount() <= QMxUdp::MaxPeers,
                 QByteArray::number(unit.udp().peerCount()).constData());
        QVERIFY(heapBytes() - before < Mebibyte);
    }

    void aSenderThatIsDoneIsForgotten()
    {
        NetworkUnit unit(8);
        withClients(1, [&](int) {
            for (int i = 0; i < 10; ++i) {
                const Client client(false);
                client.send(">r0.1x1.>r0");
                replies(client.socket(), 1);
            }
        });
        QVERIFY(runUntil([&] { return unit.udp().peerCount() == 0; }));
    }

    void aClientsQueueIsBounded_data() { transports(); }
    void aClientsQueueIsBounded()
    {
        QFETCH(bool, tcp);
        NetworkUnit unit(8);
        const qint64 before = heapBytes();
        withClients(1, [&](int) {
            const Client client(tcp);
            client.send(">r1");
            const timeval soon{0, 1000};
            ::setsockopt(client.socket().descriptor(), SOL_SOCKET, SO_SNDTIMEO, &soon, sizeof soon);
            for (int i = 0; i < 200; ++i) {
                client.send(QByteArray(">r1.").repeated(15000));
            }
            client.receive(1);
            const Client other(true);
            other.send("8?");
            other.receive(1);
        });
        const qint64 growth = heapBytes() - before;
        QVERIFY2(growth < Mebibyte, QByteArray::number(growth).constData());
    }

    void connectionsLeaveTheDeviceItsDescriptors()
    {
        NetworkUnit unit(8);
        QVERIFY(unit.boardShows({1, 1, 1, 1, 1, 1, 1, 1}));
        rlimit limit{};
        ::getrlimit(RLIMIT_NOFILE, &limit);
        std::vector<Socket> idle;
        for (int i = 0; i < 150; ++i) {
            idle.emplace_back(RawSocket::tcp(MxSite::tcpPort()));
        }
        rlimit low = limit;
        low.rlim_cur = rlim_t(idle.back()->descriptor()) + 100; // fewer than there are clients
        ::setrlimit(RLIMIT_NOFILE, &low);
        for (int i = 0; i < 100; ++i) {
            QCoreApplication::processEvents();
        }
        unit.run("save4");
        unit.run("beepon");
        const bool stored = unit.fileContent("/home/app/data/scene4").size() == 16 &&
                            unit.fileContent("/home/app/data/splice4.ini").size() == 32 &&
                            unit.fileContent("/home/app/config/setup.ini").contains("beep=1");
        // Whoever came last is served as soon as others have gone.
        const Socket last = std::move(idle.back());
        idle.clear();
        QByteArray reply;
        withClients(1, [&](int) {
            last->send("1x2");
            reply = replies(*last, 1);
        });
        ::setrlimit(RLIMIT_NOFILE, &limit);
        QVERIFY(stored);
        QCOMPARE(reply, QByteArray("OK."));
    }
};

static const RegisteredTest<TestClientTurns> registered;
#include "testclientturns.moc"
