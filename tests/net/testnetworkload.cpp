#include "clients.h"
#include "descriptorlimit.h"
#include "limit.h"
#include "networkunit.h"
#include "testregistry.h"

#include <QTest>
#include <atomic>

/// Many clients, rude clients, and clients that never listen.
class TestNetworkLoad : public QObject
{
    Q_OBJECT

private slots:
    void everyDatagramOfAFloodIsAnswered()
    {
        NetworkUnit unit(8);
        constexpr int clients = 4;
        constexpr int rounds = 40;
        constexpr int burst = 16; // to each of the eight ports
        std::atomic<int> answered{0};
        withClients(clients, [&](int) {
            const Socket socket(RawSocket::udp());
            for (int round = 0; round < rounds; ++round) {
                for (int i = 0; i < 8 * burst; ++i) {
                    socket->sendTo(static_cast<quint16>(MxSite::udpPort() + i % 8),
                                   i % 3 == 0 ? "3x1&4." : "9?");
                }
                for (int i = 0; i < 8 * burst && !socket->receive().isEmpty(); ++i) {
                    ++answered;
                }
            }
        });
        QCOMPARE(int(answered), clients * rounds * 8 * burst);
    }

    void oneFloodedPortLeavesTheOthersTheirTurn()
    {
        NetworkUnit unit(8);
        const auto flooded = static_cast<quint16>(MxSite::udpPort() + 7); // the first that is looked at
        const auto other = MxSite::udpPort();
        constexpr int flood = 100; // which wait when the unit begins to read
        const Socket client(RawSocket::udp());
        for (int i = 0; i < flood; ++i) {
            client->sendTo(flooded, QByteArray(1000, ' ') + "1x2");
        }
        client->sendTo(other, "3x4");
        int before = -1;
        withClients(1, [&](int) {
            for (quint16 from = 0; from != other && before < flood; ++before) {
                client->receiveFrom(from);
            }
        });
        QVERIFY2(before < flood, QByteArray::number(before).constData());
    }

    void fiveHundredClientsAtOnce()
    {
        DescriptorLimit::raise();
        NetworkUnit unit(8);
        QVERIFY(unit.boardShows({1, 1, 1, 1, 1, 1, 1, 1})); // the control thread has opened what it needs
        const int before = openDescriptors();
        int good = 0;
        withClients(1, [&](int) {
            std::vector<Socket> sockets;
            for (int i = 0; i < 500; ++i) {
                sockets.emplace_back(RawSocket::tcp(MxSite::tcpPort()));
            }
            for (const Socket &socket : sockets) {
                socket->send("0x1.5x1&3.5?");
            }
            for (const Socket &socket : sockets) {
                good += replies(*socket, 3) == "OK.OK.5x1&3." ? 1 : 0;
            }
            // Half of them leave properly, half are pulled out with a command on their lips.
            for (size_t i = 0; i < sockets.size(); i += 2) {
                sockets[i]->send("3x");
                sockets[i]->reset();
            }
        });
        QCOMPARE(good, 500);
        QVERIFY(runUntil([&] { return openDescriptors() <= before; }));
    }

    void aClientThatNeverReadsCostsLittle()
    {
        NetworkUnit unit(160);
        unit.comm().MxCmdOneToAll(8);
        constexpr int questions = 10000;
        constexpr qint64 mebibyte = 1024 * 1024;
        const QByteArray answer = unit.talk(sim::Wire::Control0, "9?.");
        Socket silent;
        withClients(1, [&](int) {
            silent.reset(RawSocket::tcp(MxSite::tcpPort()));
            const Socket warm(RawSocket::tcp(MxSite::tcpPort()));
            warm->send("9?");
            warm->receive();
        });
        const qint64 before = heapBytes();
        QByteArray got;
        withClients(1, [&](int) {
            silent->send(QByteArray("9?.").repeated(questions));
            // Whoever listens is served meanwhile.
            const Socket other(RawSocket::tcp(MxSite::tcpPort()));
            for (int i = 0; i < 200; ++i) {
                other->send("9?.");
                replies(*other, 1);
            }
        });
        const qint64 growth = heapBytes() - before;
        QVERIFY2(growth < mebibyte, QByteArray::number(growth).constData());
        withClients(1, [&](int) {
            silent->send("8?");
            while (!got.endsWith("8x.")) {
                got += silent->receive();
            }
        });
        // Where the network has cut the block in the middle of a question, its halves are errors.
        const int whole = got.count(answer);
        QVERIFY(whole > questions - 10 && whole <= questions);
        QCOMPARE(got.replace(answer, "").replace("ERR.", ""), QByteArray("8x."));
    }

    void aServerOutOfDescriptorsAcceptsAgain()
    {
        NetworkUnit unit(8);
        QVERIFY(unit.boardShows({1, 1, 1, 1, 1, 1, 1, 1}));
        // The kernel has taken the connection; the server cannot.
        const Socket client(RawSocket::tcp(MxSite::tcpPort()));
        {
            const FileDescriptor lowestFree(dup(client->descriptor()));
            const Limit none(RLIMIT_NOFILE, static_cast<rlim_t>(lowestFree.get()) + 1);
            for (int i = 0; i < 10; ++i) {
                QCoreApplication::processEvents();
            }
        }
        QByteArray reply;
        withClients(1, [&](int) {
            client->send("1x1");
            reply = replies(*client, 1);
        });
        QCOMPARE(reply, QByteArray("OK."));
    }
};

static const RegisteredTest<TestNetworkLoad> registered;
#include "testnetworkload.moc"
