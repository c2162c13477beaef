#include "ask.h"
#include "filedescriptor.h"
#include "mxsite.h"
#include "product.h"
#include "rawsocket.h"
#include "sharedobjects.h"
#include "testregistry.h"
#include "testunit.h"
#include "tickcount.h"

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
/// Operated from the front panel, it comes up without the start picture, which takes a second.
const TestUnit::Settings Panel = {{"system/keypad", "1"}};
const QByteArray Recalls = QByteArray(">r1.").repeated(12);

/// Has sent recalls, over TCP or UDP, and listens.
class Greedy
{
public:
    explicit Greedy(bool tcp)
        : m_socket(tcp ? RawSocket::tcp(MxSite::tcpPort()) : RawSocket::udp())
    {
        if (tcp) {
            m_socket->send("1x1." + Recalls);
        } else {
            m_socket->sendTo(MxSite::udpPort(), "1x1." + Recalls);
        }
    }
    /// Waits for more. \return how many commands have been carried out
    int served() { return (m_replies += m_socket->receive()).count("OK."); }

private:
    const std::unique_ptr<RawSocket> m_socket;
    QByteArray m_replies;
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
        QVERIFY(QRegularExpression(QStringLiteral("t0 \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\n"))
                    .match(QString::fromLatin1(product.output()))
                    .hasMatch());
        QCOMPARE(unit.hardware().files().backlight(), 3);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QCOMPARE(unit.talk(Wire::Control0, "3x1&4."), QByteArray("OK."));
        QCOMPARE(unit.talk(Wire::Control1, "2x1\r"), QByteArray("OK."));
        QCOMPARE(askTcp("4x2"), QByteArray("OK."));
        QCOMPARE(askUdp("0x3"), QByteArray("OK."));
        QCOMPARE(unit.talk(Wire::Control1, "2?."), QByteArray("2x1."));
        QVERIFY(unit.boardShows({2, 4, 0, 3}));
        QCOMPARE(product.end(SIGINT), 0);
        const int frames = int(unit.hardware().board().switchFrames().size());
        QVERIFY(unit.rises(8) == frames && unit.rises(4) == frames && unit.rises(0) == 1);
        QVERIFY(unit.hardware().gpio().level(4) == 0 && unit.hardware().gpio().level(8) == 0);
        QCOMPARE(unit.faults(), QByteArray());
    }

    void theRoutingIsBackAfterAnyEnd()
    {
        TestUnit unit(4, Panel);
        size_t frames = 0;
        for (const int signal : {SIGTERM, SIGKILL, SIGTERM}) {
            Product product;
            QVERIFY(unit.hardware().waitFor(
                [&] { return unit.hardware().board().switchFrames().size() > frames; }, 10000));
            if (frames == 0) {
                QCOMPARE(unit.talk(Wire::Control0, "4x1."), QByteArray("OK."));
            }
            QVERIFY(unit.boardShows({4, 1, 1, 1}));
            QVERIFY(runUntil([&] { return unit.fileContent("/home/app/data/scene0").startsWith('\3'); }));
            QCOMPARE(product.end(signal), signal == SIGKILL ? -1 : 0);
            // The shared objects outlive the program.
            QVERIFY(shmget(MxSite::segmentKey(), 0, 0) >= 0);
            // The board wants its pause also between two programs.
            const std::vector<sim::SwitchFrame> all = unit.hardware().board().switchFrames();
            frames = all.size();
            const auto last = static_cast<quint32>(all.back().timeUs / 1000);
            QVERIFY(runUntil([&] { return ticksBetween(last, GetTickCount()) > 600; }));
        }
        QCOMPARE(unit.faults(), QByteArray());
    }

    void aSignalEndsItWithinOneRecall_data()
    {
        QTest::addColumn<bool>("network");
        QTest::addColumn<bool>("tcp");
        QTest::newRow("serial") << false << false;
        QTest::newRow("TCP") << true << true;
        QTest::newRow("UDP") << true << false;
    }
    /// However much a client, which stays there, has asked for.
    void aSignalEndsItWithinOneRecall()
    {
        QFETCH(bool, network);
        QFETCH(bool, tcp);
        TestUnit unit(4, Panel);
        Product product;
        std::unique_ptr<Greedy> client;
        if (network) {
            client = std::make_unique<Greedy>(tcp);
            QVERIFY(client->served() > 0);
        } else {
            QCOMPARE(unit.talk(Wire::Control0, "1x1." + Recalls), QByteArray("OK."));
        }
        QCOMPARE(product.end(SIGTERM), 0);
        // Which each recall says at its end.
        QVERIFY2(product.output().count("LoadSplice") <= 1, product.output());
    }

    void recallsDoNotHoldTheStart()
    {
        TestUnit unit(4);
        Product product;
        Greedy client(true);
        QVERIFY(client.served() > 0 && product.await("t1 "));
        QVERIFY(client.served() <= 2);
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
        TestUnit unit(4, Panel);
        const QString output = unit.path("/output");
        QCOMPARE(mkfifo(qPrintable(output), 0600), 0);
        FileDescriptor reader(::open(qPrintable(output), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        Product product(false, QStringLiteral("offscreen"), output);
        QCOMPARE(unit.talk(Wire::Control0, "2?."), QByteArray("2x."));
        reader.reset(-1);
        QCOMPARE(unit.talk(Wire::Control0, "save3.2?.", 2), QByteArray("OK.2x.")); // which it says
        QCOMPARE(product.end(SIGTERM), 0);
    }

    /// While it runs, and without a word more to the client.
    void itSaysWhatCannotBeReadOrWritten()
    {
        TestUnit unit(4, Panel);
        for (const char *file : {"/home/app/config/caption.ini", "/etc/eth1.conf", "/home/app/data/scene2",
                                 "/home/app/data/splice3.ini", "/home/www/splice/splice4.txt"}) {
            unit.makeFolder(file);
        }
        unit.writeFile("/home/www/splice/splice.txt", "layout");
        Product product;
        QCOMPARE(unit.talk(Wire::Control0, "beepon.save2.save3.save4.", 4), QByteArray("OK.OK.OK.OK."));
        unit.hardware().send(Wire::Control0, "recall3."); // beside the other
        QCOMPARE(askTcp("recall4."), QByteArray("OK."));
        for (const char *line :
             {"read /etc/eth1.conf", "read /home/app/config/caption.ini", "read /home/app/data/scene2",
              "write /etc/eth1.conf", "write /home/app/data/scene2", "write /home/app/data/splice3.ini",
              "write /home/www/splice/splice4.txt", "read /home/app/data/splice3.ini",
              "read /home/www/splice/splice4.txt"}) {
            QVERIFY2(product.await("can't " + QByteArray(line) + ": Is a directory\n"), line);
        }
        // Of a missing file nothing is said, and of the words that could not be read nothing was sent.
        QCOMPARE(product.output().count("can't "), 9);
        QCOMPARE(unit.fileContent("/home/www/splice/splice.txt"), QByteArray("layout"));
        QVERIFY(runUntil([&] { return unit.hardware().board().spliceFrames().size() == 1; }));
        QCOMPARE(product.end(SIGTERM), 0);
    }

    void itIsOperatedByTouchOrFromThePanel_data()
    {
        QTest::addColumn<int>("ports");
        QTest::addColumn<int>("keypad");
        QTest::addColumn<bool>("isTouched");
        QTest::newRow("least") << 2 << 1 << false;
        QTest::newRow("most ports of a panel") << 40 << 1 << false;
        QTest::newRow("too many ports") << 41 << 1 << true;
        QTest::newRow("a panel below none") << 2 << -1 << true;
    }
    void itIsOperatedByTouchOrFromThePanel()
    {
        QFETCH(int, ports);
        QFETCH(int, keypad);
        QFETCH(bool, isTouched);
        TestUnit unit(ports, {{"system/keypad", std::to_string(keypad)}, {"system/sleep", "2"}});
        Product product;
        const QMxComm observer(false);
        QVERIFY(isTouched ? product.await("t1 ") : runUntil([] { return g_mxConfig->sleep == 4; }));
        QCOMPARE(int(g_mxConfig->sleep), isTouched ? 2 : 4);
        QCOMPARE(product.end(SIGTERM), 0);
        QCOMPARE(product.output().contains("\nt1 "), isTouched);
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
