#include "networkunit.h"
#include "testregistry.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTest>
#include <QUdpSocket>

namespace
{
const QHostAddress Here(QHostAddress::LocalHost);

QByteArray receive(QTcpSocket &client, int size)
{
    QByteArray bytes;
    runUntil([&] {
        bytes += client.readAll();
        return bytes.size() >= size;
    });
    return bytes;
}

/// Sends one block and waits until its replies have come. \return the replies
QByteArray askTcp(quint16 port, const QByteArray &block, int replySize)
{
    QTcpSocket client;
    client.connectToHost(Here, port);
    client.write(block);
    const QByteArray replies = receive(client, replySize);
    // By the time that a later client has been answered, nothing more is under way.
    QTcpSocket later;
    later.connectToHost(Here, port);
    runUntil([&] { return client.bytesToWrite() == 0; });
    later.write("8?");
    receive(later, 3);
    return replies + client.readAll();
}

/// The same over UDP. \return the reply datagrams, each in brackets
QByteArray askUdp(quint16 port, const QByteArray &datagram)
{
    QUdpSocket client;
    client.bind(Here);
    client.writeDatagram(datagram, Here, port);
    client.writeDatagram("8?", Here, port);
    QByteArray replies;
    runUntil([&] {
        while (client.hasPendingDatagrams()) {
            QByteArray reply(int(client.pendingDatagramSize()), '\0');
            quint16 from = 0;
            client.readDatagram(reply.data(), reply.size(), nullptr, &from);
            replies += from == port ? "[" + reply + "]" : QByteArray("[from another port]");
        }
        return replies.endsWith("[8x.]");
    });
    replies.chop(5);
    return replies;
}

/// "OK.ERR.3x." as "[OK.][ERR.][3x.]"
QByteArray asDatagrams(QByteArray replies)
{
    replies.replace(".", ".][");
    return replies.isEmpty() ? replies : "[" + replies.left(replies.size() - 1);
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
        for (const auto &[name, block, replies] :
             {std::tuple<const char *, QByteArray, QByteArray>("no terminator", "2x3", "OK."),
              {"each terminator", "1X1.1x2!1x3$1x4%1x5\r1x6\n1x7\r\n", "OK.OK.OK.OK.OK.OK.OK."},
              {"questions", "0all.3x1&4.3?.2?", "OK.OK.3x1&4.2x."},
              {"errors do not end it", "bad.0x.9?.4?..recall11.temp.1x1", "ERR.OK.ERR.4x.ERR.ERR.OK."},
              {"only empty lines", "\r\n..", ""},
              {"NUL bytes", QByteArray("1\0x2.3x1", 8), "OK.OK."},
              {"not quite a frame", "\xEB", "ERR."},
              {"frame bytes behind text", "1x2.\xEB\x90", "OK.ERR."},
              {"one long line", QByteArray(60000, 'q'), "ERR."},
              {"many short lines", QByteArray("..........").repeated(6000) + "1x2", "OK."}}) {
            QVERIFY2(askTcp(MxSite::tcpPort(), block, replies.size()) == replies, name);
            for (int i = 0; i < 8; ++i) {
                const auto port = static_cast<quint16>(MxSite::udpPort() + i);
                QVERIFY2(askUdp(port, block) == asDatagrams(replies), name);
            }
        }
    }

    void blocksForTheBoardComeBack()
    {
        for (const QByteArray &block :
             {QByteArray::fromHex("EB900007000000"),
              QByteArray::fromHex("EB90000A") + "3all." + QByteArray(1, '\0'), // with a command in it
              QByteArray::fromHex("EB900007112200EB900007334400")}) {
            const auto boardGot = [&](int times) {
                return runUntil([&] {
                    const std::vector<uint8_t> all = m_unit->hardware().board().bytes();
                    const QByteArray bytes(reinterpret_cast<const char *>(all.data()), int(all.size()));
                    return bytes.count(block) == times;
                });
            };
            QCOMPARE(askTcp(MxSite::tcpPort(), block, block.size()), block);
            QVERIFY(boardGot(1));
            QCOMPARE(askUdp(MxSite::udpPort(), block), "[" + block + "]");
            QVERIFY(boardGot(2));
        }
        QCOMPARE(m_unit->hardware().board().routing(), std::vector<uint16_t>(8, 0));
    }

    void aBlockTheBoardDidNotTakeHasNoAnswer()
    {
        const QByteArray frame = QByteArray::fromHex("EB900007000000");
        m_unit->hardware().unplug(sim::Wire::Matrix);
        m_unit->stop();
        m_unit->start();
        QCOMPARE(askTcp(MxSite::tcpPort(), frame, 0), QByteArray());
        QCOMPARE(askUdp(MxSite::udpPort(), frame), QByteArray());
    }

private:
    std::unique_ptr<NetworkUnit> m_unit;
};

static const RegisteredTest<TestNetwork> registered;
#include "testnetwork.moc"
