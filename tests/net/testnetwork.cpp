#include "clients.h"
#include "networkunit.h"
#include "rows.h"
#include "testregistry.h"

#include <QTest>

namespace
{
/// \return the reply datagrams, each in brackets
QByteArray repliesOverUdp(quint16 port, const QByteArray &datagram)
{
    QByteArray got;
    besideTheUnit([&] {
        const Socket client(RawSocket::udp());
        client->sendTo(port, datagram);
        client->sendTo(port, "8?"); // by its reply all others have come
        quint16 from = port;
        while (from == port && !got.endsWith("[8x.]")) {
            got += "[" + client->receiveFrom(from) + "]";
        }
    });
    return got.left(got.lastIndexOf("[8x.]"));
}
} // namespace

/// The command language and the board's frames over TCP and over UDP, on a unit with 8 ports.
class TestNetwork : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_unit.reset(new NetworkUnit(8));
        QVERIFY(m_unit->boardShows({1, 1, 1, 1, 1, 1, 1, 1}));
    }
    void cleanup()
    {
        QCOMPARE(m_unit->faults(), QByteArray());
        m_unit.reset();
    }

    void commands()
    {
        const QByteArray block = "\xEB.0x.9?.4?..recall11.1x1." + QByteArray(60000, 'q') + ".1x2.\xEB\x90";
        QCOMPARE(repliesOverTcp(block), QByteArray("ERR.OK.ERR.4x.ERR.OK.ERR.OK.ERR."));
        for (int i = 0; i < 8; ++i) {
            const auto port = static_cast<quint16>(MxSite::udpPort() + i);
            QCOMPARE(repliesOverUdp(port, block),
                     QByteArray("[ERR.][OK.][ERR.][4x.][ERR.][OK.][ERR.][OK.][ERR.]"));
            QCOMPARE(repliesOverUdp(port, "\xEB"), QByteArray("[ERR.]"));
            QCOMPARE(repliesOverUdp(port, "OK."), QByteArray("[ERR.]")); // as if a unit had answered us
            QCOMPARE(repliesOverUdp(port, "ERR."), QByteArray());        // of which one must not answer
        }
    }

    void blocksForTheBoardComeBack_data()
    {
        columns<QByteArray>("block");
        row("a frame", QByteArray::fromHex("EB900007000000"));
        row("a command in it", QByteArray::fromHex("EB90000A 33616C6C2E 00"));
        row("two frames", QByteArray::fromHex("EB900007112200EB900007334400"));
    }
    void blocksForTheBoardComeBack()
    {
        QFETCH(QByteArray, block);
        const QByteArray before = m_unit->boardBytes();
        QCOMPARE(repliesOverTcp(block), block);
        QCOMPARE(repliesOverUdp(MxSite::udpPort(), block), "[" + block + "]");
        QVERIFY(runUntil([&] { return m_unit->boardBytes() == before + block + block; }));
        QCOMPARE(m_unit->map(), QByteArray("1,1,1,1,1,1,1,1"));
    }

    void aBlockTheBoardDidNotTakeHasNoAnswer()
    {
        const QByteArray frame = QByteArray::fromHex("EB900007000000");
        m_unit->hardware().unplug(sim::Wire::Matrix);
        m_unit->stop();
        m_unit->start();
        QCOMPARE(repliesOverTcp(frame), QByteArray());
        QCOMPARE(repliesOverUdp(MxSite::udpPort(), frame), QByteArray());
    }

private:
    std::unique_ptr<NetworkUnit> m_unit;
};

static const RegisteredTest<TestNetwork> registered;
#include "testnetwork.moc"
