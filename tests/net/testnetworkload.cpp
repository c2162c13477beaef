#include "clients.h"
#include "descriptorlimit.h"
#include "limit.h"
#include "networkunit.h"
#include "testregistry.h"

#include <QTest>
#include <QVector>
#include <fcntl.h>
#include <vector>

/// Many clients, rude clients, and clients that never listen.
class TestNetworkLoad : public QObject
{
    Q_OBJECT

private slots:
    /// Of two flooded ports, neither is read empty before the other has its turn.
    void aFloodIsAnsweredAndLeavesTheOtherPortsTheirTurn()
    {
        NetworkUnit unit(8);
        constexpr int flood = 100; // to each, which wait when the unit begins to read
        const Socket client(RawSocket::udp());
        for (int i = 0; i < 2 * flood; ++i) {
            client->sendTo(static_cast<quint16>(MxSite::udpPort() + i % 2), QByteArray(1000, ' ') + "1x2");
        }
        QVector<quint16> answers; // by their ports
        besideTheUnit([&] {
            quint16 from = 0;
            while (answers.size() < 2 * flood && !client->receiveFrom(from).isEmpty()) {
                answers.append(from);
            }
        });
        QCOMPARE(answers.size(), 2 * flood);
        QVERIFY(answers.mid(0, flood).count(answers.first()) < flood);
    }

    void fiveHundredClientsAtOnce()
    {
        DescriptorLimit::raise();
        NetworkUnit unit(8);
        QVERIFY(unit.boardShows({1, 1, 1, 1, 1, 1, 1, 1})); // the control thread has opened what it needs
        const int before = openDescriptors();
        int good = 0;
        besideTheUnit([&] {
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
        constexpr qint64 mebibyte = 1024 * 1024;
        const Socket silent(RawSocket::tcp(MxSite::tcpPort()));
        const qint64 before = heapBytes();
        besideTheUnit([&] {
            silent->send(QByteArray("9?.").repeated(10000));
            // Whoever listens is served meanwhile.
            const Socket other(RawSocket::tcp(MxSite::tcpPort()));
            for (int i = 0; i < 200; ++i) {
                other->send("9?.");
                replies(*other, 1);
            }
        });
        const qint64 growth = heapBytes() - before;
        QVERIFY2(growth < mebibyte, QByteArray::number(growth).constData());
    }

    /// As one has that another thread starts, until it runs its program.
    void aChildThatStillHasTheConnectionOfAClientThatIsGone()
    {
        NetworkUnit unit(8);
        QVERIFY(unit.boardShows({1, 1, 1, 1, 1, 1, 1, 1}));
        const Socket client(RawSocket::tcp(MxSite::tcpPort()));
        FileDescriptor lowestFree(dup(client->descriptor()));
        const int accepted = lowestFree.get();
        lowestFree.reset(-1);
        QCOMPARE(reply(*client, "1x1"), QByteArray("OK."));
        const FileDescriptor ofTheChild(dup(accepted));
        client->reset();
        QVERIFY(runUntil([&] { return ::fcntl(accepted, F_GETFD) < 0; }));
        const Socket other(RawSocket::tcp(MxSite::tcpPort()));
        QCOMPARE(reply(*other, "1x1"), QByteArray("OK."));
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
        QCOMPARE(reply(*client, "1x1"), QByteArray("OK."));
    }
};

static const RegisteredTest<TestNetworkLoad> registered;
#include "testnetworkload.moc"
