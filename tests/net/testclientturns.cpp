#include "clients.h"
#include "limit.h"
#include "networkunit.h"
#include "rows.h"
#include "testregistry.h"

#include <QTest>
#include <atomic>
#include <sys/socket.h>
#include <vector>

namespace
{
constexpr qint64 Mebibyte = 1024 * 1024;
} // namespace

/// What one client's commands may cost the others, and the unit.
class TestClientTurns : public QObject
{
    Q_OBJECT

private slots:
    void halfCloseMeansFinishAnswerThenClose_data()
    {
        columns<QByteArray, int>("block", "count");
        row("nothing", "", 0);
        row("more than fits anywhere", QByteArray("9?.").repeated(20001), 20001);
        row("behind a recall", ">r1.1x2.", 2);
        row("a recall whose terminator might still come", QByteArray("1x2.").repeated(150) + ">r1", 151);
    }
    void halfCloseMeansFinishAnswerThenClose()
    {
        QFETCH(QByteArray, block);
        QFETCH(int, count);
        NetworkUnit unit(160);
        unit.comm().MxCmdOneToAll(8);
        const QByteArray got = repliesOverTcp(block);
        QCOMPARE(got.count('.'), count);
        QVERIFY(!got.contains("ERR."));
    }

    void onlySendersWithSomethingLeftAreRemembered()
    {
        std::atomic<bool> allSent{false};
        int most = 0;
        NetworkUnit unit(8, [&](unsigned long) {
            unit.stall([&] { return bool(allSent); });
            most = qMax(most, unit.udp().peerCount());
        });
        const qint64 before = heapBytes();
        besideTheUnit([&] {
            const Socket honest(RawSocket::udp());
            std::vector<Socket> forged; // all kept, so that each is another
            for (int i = 0; i < QMxUdp::MaxPeers + 100; ++i) {
                forged.emplace_back(RawSocket::udp());
                forged.back()->sendTo(static_cast<quint16>(MxSite::udpPort() + i % 8),
                                      i < 50 ? "1x1" : ">r1.>r1");
            }
            honest->sendTo(MxSite::udpPort(), "8?");
            allSent = true;
            if (honest->receive() != "8x.") {
                qFatal("no reply");
            }
        });
        QVERIFY(runUntil([&] { return most == QMxUdp::MaxPeers && unit.udp().peerCount() == 0; }));
        QVERIFY(heapBytes() - before < Mebibyte);
    }

    void aClientsQueueIsBounded_data()
    {
        columns<bool>("tcp");
        row("TCP", true);
        row("UDP", false);
    }
    /// A block more during each of its recalls.
    void aClientsQueueIsBounded()
    {
        QFETCH(bool, tcp);
        constexpr int Blocks = 25;
        std::atomic<int> recalls{0};
        std::atomic<int> sent{0};
        NetworkUnit unit(8, [&](unsigned long) {
            const int blocks = qMin<int>(++recalls, Blocks);
            unit.stall([&] { return sent >= blocks; });
        });
        const qint64 before = heapBytes();
        besideTheUnit([&] {
            const Socket client(tcp ? RawSocket::tcp(MxSite::tcpPort()) : RawSocket::udp());
            const auto send = [&](const QByteArray &bytes) {
                return tcp ? client->send(bytes) : client->sendTo(MxSite::udpPort(), bytes);
            };
            send(">r1");
            const timeval soon{0, 1000};
            ::setsockopt(client->descriptor(), SOL_SOCKET, SO_SNDTIMEO, &soon, sizeof soon);
            for (; sent < Blocks; ++sent) {
                unit.stall([&] { return recalls > sent; });
                send(QByteArray(">r1.").repeated(15000));
            }
            const Socket other(RawSocket::tcp(MxSite::tcpPort()));
            other->send("8?");
            other->receive();
        });
        const qint64 growth = heapBytes() - before;
        QVERIFY2(growth < Mebibyte, QByteArray::number(growth).constData());
    }

    void connectionsLeaveTheDeviceItsDescriptors()
    {
        NetworkUnit unit(8);
        QVERIFY(unit.boardShows({1, 1, 1, 1, 1, 1, 1, 1}));
        std::vector<Socket> idle;
        for (int i = 0; i < 150; ++i) {
            idle.emplace_back(RawSocket::tcp(MxSite::tcpPort()));
        }
        // Fewer than there are clients.
        const Limit low(RLIMIT_NOFILE, rlim_t(idle.back()->descriptor()) + 100);
        for (int i = 0; i < 100; ++i) {
            QCoreApplication::processEvents();
        }
        unit.run("save4");
        unit.run("beepon");
        QCOMPARE(unit.fileContent("/home/app/data/scene4").size(), 16);
        QCOMPARE(unit.fileContent("/home/app/data/splice4.ini").size(), 32);
        QVERIFY(unit.fileContent("/home/app/config/setup.ini").contains("beep=1"));
        // Whoever came last is served as soon as others have gone.
        const Socket last = std::move(idle.back());
        idle.clear();
        QCOMPARE(reply(*last, "1x2"), QByteArray("OK."));
    }
};

static const RegisteredTest<TestClientTurns> registered;
#include "testclientturns.moc"
