#include "clients.h"
#include "limit.h"
#include "networkunit.h"
#include "testregistry.h"

#include <QTest>
#include <QVector>
#include <netinet/in.h>
#include <vector>

namespace
{
using NameOf = int (*)(int, sockaddr *, socklen_t *);

int portOf(int descriptor, NameOf name)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    name(descriptor, reinterpret_cast<sockaddr *>(&address), &size);
    return address.sin_port;
}

/// The server's descriptor of this connection; -1 when there is none.
int otherEnd(const RawSocket &client)
{
    const int port = portOf(client.descriptor(), getsockname);
    int other = 1023;
    while (other >= 0 && portOf(other, getpeername) != port) {
        --other;
    }
    return other;
}
} // namespace

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

    /// Pulled out with a command on their lips.
    void clientsThatGoLeaveNoDescriptor()
    {
        NetworkUnit unit(8);
        QVERIFY(unit.boardShows({1, 1, 1, 1, 1, 1, 1, 1})); // the control thread has opened what it needs
        const int before = openDescriptors();
        for (int i = 0; i < 20; ++i) {
            const Socket client(RawSocket::tcp(MxSite::tcpPort()));
            reply(*client, "0x1");
            client->send("3x");
            client->reset();
        }
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

    /// As a child process does between its making and its program.
    void aCopyOfTheServersDescriptorKeepsNoClient()
    {
        NetworkUnit unit(8);
        Socket client(RawSocket::tcp(MxSite::tcpPort()));
        QCOMPARE(reply(*client, "1x1"), QByteArray("OK."));
        const FileDescriptor copy(dup(otherEnd(*client)));
        QVERIFY(copy.get() >= 0);
        const int before = openDescriptors();
        client->reset();
        QVERIFY(runUntil([&] { return openDescriptors() == before - 2; }));
        QCOMPARE(repliesOverTcp("1x1"), QByteArray("OK."));
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
