#include "ask.h"
#include "filedescriptor.h"
#include "mxsite.h"
#include "product.h"
#include "rawsocket.h"
#include "sharedobjects.h"
#include "testregistry.h"
#include "testunit.h"
#include "tickcount.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTest>
#include <QUdpSocket>
#include <csignal>
#include <fcntl.h>
#include <sys/shm.h>
#include <sys/stat.h>

using sim::Wire;

namespace
{
/// Whether SIGTERM ends it properly, and within a recall and a half.
bool endsSoon(Product &product)
{
    QElapsedTimer elapsed;
    elapsed.start();
    return product.end(SIGTERM) == 0 && elapsed.elapsed() < 1500;
}

/// Has sent 16,000 recalls, and listens.
class Greedy
{
public:
    explicit Greedy(bool tcp)
        : m_socket(tcp ? RawSocket::tcp(MxSite::tcpPort()) : RawSocket::udp())
    {
        const QByteArray block = "1x1." + QByteArray(">r1.").repeated(16000);
        if (tcp) {
            m_socket->send(block);
        } else {
            m_socket->sendTo(MxSite::udpPort(), block);
        }
    }
    bool isServed() const { return m_socket->receive() == "OK."; }

private:
    const std::unique_ptr<RawSocket> m_socket;
};
} // namespace

/// The program as a process, from its start to its end.
class TestProduct : public QObject
{
    Q_OBJECT

private slots:
    void everyWireEndsAtTheBoard()
    {
        TestUnit unit(4, {{"system/beep", "1"}, {"system/backlight", "2"}});
        Product product;
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QVERIFY(QRegularExpression(QStringLiteral("t0 \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\n"))
                    .match(QString::fromLatin1(product.output()))
                    .hasMatch());
        QCOMPARE(unit.hardware().files().backlight(), 3);
        QCOMPARE(unit.talk(Wire::Control0, "3x1&4."), QByteArray("OK."));
        QVERIFY(unit.boardShows({3, 1, 1, 3}));
        QCOMPARE(unit.talk(Wire::Control1, "2x1\r"), QByteArray("OK."));
        QVERIFY(unit.boardShows({2, 1, 1, 3}));
        QCOMPARE(askTcp("4x2"), QByteArray("OK."));
        QVERIFY(unit.boardShows({2, 4, 1, 3}));
        QCOMPARE(askUdp("0x3"), QByteArray("OK."));
        QVERIFY(unit.boardShows({2, 4, 0, 3}));
        QCOMPARE(unit.talk(Wire::Control1, "2?."), QByteArray("2x1."));
        QCOMPARE(product.end(SIGTERM), 0);
        const int frames = int(unit.hardware().board().switchFrames().size());
        QVERIFY(unit.rises(8) == frames && unit.rises(4) == frames && unit.rises(0) == 1);
        QVERIFY(unit.hardware().gpio().level(4) == 0 && unit.hardware().gpio().level(8) == 0);
        QCOMPARE(unit.faults(), QByteArray());
    }

    void theRoutingIsBackAfterAnyEnd()
    {
        for (const int signal : {SIGINT, SIGTERM, SIGKILL}) {
            TestUnit unit(4);
            {
                Product product;
                QVERIFY(unit.boardShows({1, 1, 1, 1}));
                QCOMPARE(unit.talk(Wire::Control0, "all1.save2.4x1.", 3), QByteArray("OK.OK.OK."));
                QVERIFY(unit.boardShows({4, 2, 3, 4}));
                QVERIFY(runUntil([&] { return unit.fileContent("/home/app/data/scene0").startsWith('\3'); }));
                QCOMPARE(product.end(signal), signal == SIGKILL ? -1 : 0);
            }
            // The shared objects outlive the program.
            QVERIFY(shmget(MxSite::segmentKey(), 0, 0) >= 0);
            // The board wants its pause also between two programs.
            const std::vector<sim::SwitchFrame> frames = unit.hardware().board().switchFrames();
            const auto last = static_cast<quint32>(frames.back().timeUs / 1000);
            QVERIFY(runUntil([&] { return ticksBetween(last, GetTickCount()) > 600; }));
            const Product again;
            QVERIFY(runUntil([&] { return unit.hardware().board().switchFrames().size() > frames.size(); }));
            QVERIFY(unit.boardShows({4, 2, 3, 4}));
            QCOMPARE(unit.talk(Wire::Control0, "recall2.1?.", 2), QByteArray("OK.1x1."));
            QVERIFY(unit.boardShows({1, 2, 3, 4}));
            QVERIFY(runUntil([&] { return unit.hardware().board().spliceFrames().size() == 1; }));
            QCOMPARE(unit.faults(), QByteArray());
        }
    }

    void aSignalIsServedBetweenTwoRecalls()
    {
        TestUnit unit(4);
        Product product;
        QVERIFY(product.await("t1 "));
        const QByteArray recalls = QByteArray("recall2.").repeated(12);
        QCOMPARE(unit.talk(Wire::Control0, "4x4.save2." + recalls, 3), QByteArray("OK.OK.OK."));
        QVERIFY(endsSoon(product));
        QCOMPARE(unit.fileContent("/home/app/data/scene2"), QByteArray::fromHex("0000000000000300"));
    }

    /// However much a client, which stays there, has asked for.
    void aSignalEndsItWithinOneRecall()
    {
        for (const bool tcp : {true, false}) {
            TestUnit unit(4);
            Product product;
            QVERIFY(product.await("t1 "));
            const Greedy client(tcp);
            QVERIFY2(client.isServed() && endsSoon(product), tcp ? "TCP" : "UDP");
        }
    }

    void recallsDoNotHoldTheStart()
    {
        TestUnit unit(4);
        Product product;
        QElapsedTimer elapsed;
        elapsed.start();
        const Greedy client(true);
        QVERIFY(client.isServed() && product.await("t1 "));
        QVERIFY2(elapsed.elapsed() < 4000, QByteArray::number(elapsed.elapsed()));
    }

    void aTakenPortIsNamed()
    {
        TestUnit unit(4);
        const int udpPort = MxSite::udpPort() + 3;
        QTcpServer tcp;
        QVERIFY(tcp.listen(QHostAddress::AnyIPv4, MxSite::tcpPort()));
        QUdpSocket udp;
        QVERIFY(udp.bind(QHostAddress(QHostAddress::AnyIPv4), static_cast<quint16>(udpPort)));
        Product product;
        const QByteArray said = product.output();
        QVERIFY(said.contains("can't listen on TCP port " + QByteArray::number(MxSite::tcpPort())));
        QVERIFY(said.contains("can't bind UDP port " + QByteArray::number(udpPort)));
        QCOMPARE(unit.talk(Wire::Control0, "1?."), QByteArray("1x1&2&3&4."));
    }

    void aReaderOfItsOutputMayGoAway()
    {
        TestUnit unit(4);
        const QString output = unit.path("/output");
        QCOMPARE(mkfifo(qPrintable(output), 0600), 0);
        FileDescriptor reader(::open(qPrintable(output), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        Product product(false, QStringLiteral("offscreen"), output);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        reader.reset(-1);
        QCOMPARE(unit.talk(Wire::Control0, "save3.2?.", 2), QByteArray("OK.2x."));
        QCOMPARE(product.end(SIGTERM), 0);
    }

    /// While it runs, and without a word more to the client.
    void itSaysWhatCannotBeReadOrWritten()
    {
        TestUnit unit(4);
        for (const char *file : {"/home/app/config/caption.ini", "/etc/eth1.conf", "/home/app/data/scene2",
                                 "/home/app/data/splice3.ini", "/home/www/splice/splice4.txt"}) {
            unit.makeFolder(file);
        }
        unit.writeFile("/home/www/splice/splice.txt", "layout");
        Product product;
        for (const auto &[command, lines] :
             {std::pair<QByteArray, QList<QByteArray>>(
                  "",
                  {"read /etc/eth1.conf", "read /home/app/config/caption.ini", "read /home/app/data/scene2"}),
              {"beepon.", {"write /etc/eth1.conf"}},
              {"save2.", {"write /home/app/data/scene2"}},
              {"save3.", {"write /home/app/data/splice3.ini"}},
              {"recall3.", {"read /home/app/data/splice3.ini"}},
              {"save4.", {"write /home/www/splice/splice4.txt"}},
              {"recall4.", {"read /home/www/splice/splice4.txt"}}}) {
            QVERIFY(command.isEmpty() || unit.talk(Wire::Control0, command) == "OK.");
            for (const QByteArray &line : lines) {
                QVERIFY2(product.await("can't " + line + ": Is a directory\n"), line);
            }
        }
        // Of a missing file nothing is said, and of the words that could not be read nothing was sent.
        QCOMPARE(product.output().count("can't "), 9);
        QCOMPARE(unit.fileContent("/home/www/splice/splice.txt"), QByteArray("layout"));
        QVERIFY(runUntil([&] { return unit.hardware().board().spliceFrames().size() == 1; }));
        QCOMPARE(product.end(SIGTERM), 0);
    }

    void itIsOperatedByTouchOrFromThePanel()
    {
        for (const auto &[ports, keypad, isTouched] :
             {std::tuple(2, 1, false), {40, 1, false}, {41, 1, true}, {2, 0, true}, {2, -1, true}}) {
            TestUnit unit(ports, {{"system/keypad", std::to_string(keypad)}, {"system/sleep", "2"}});
            Product product;
            const QMxComm observer(false);
            QVERIFY(isTouched ? product.await("t1 ") : runUntil([] { return g_mxConfig->sleep == 4; }));
            QCOMPARE(unit.talk(Wire::Control0, "1?.").right(1), QByteArray("."));
            QCOMPARE(int(g_mxConfig->sleep), isTouched ? 2 : 4);
            QCOMPARE(product.end(SIGTERM), 0);
            QCOMPARE(product.output().contains("\nt1 "), isTouched);
        }
    }

    void withoutSharedMemoryItSaysSoAndEnds()
    {
        const TestUnit unit(4);
        const int foreign = shmget(MxSite::segmentKey(), 4096, IPC_CREAT | 0600);
        Product product(false);
        QCOMPARE(product.finish(), 1);
        shmctl(foreign, IPC_RMID, nullptr);
        QVERIFY(product.errors().contains("shm error"));
    }
};

static const RegisteredTest<TestProduct> registered;
#include "testproduct.moc"
