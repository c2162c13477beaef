#include "ask.h"
#include "filedescriptor.h"
#include "mxsite.h"
#include "product.h"
#include "rawsocket.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

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
} // namespace

/// The program as a process, from its start to its end.
class TestProduct : public QObject
{
    Q_OBJECT

private slots:
    void itStartsAndEnds()
    {
        TestUnit unit(4, {{"system/beep", "1"}, {"system/backlight", "2"}, {"system/keypad", "-1"}});
        Product product;
        const QRegularExpression start(QStringLiteral("t0 \\d{4}(-\\d\\d){2} \\d\\d(:\\d\\d){2}\\n"));
        QVERIFY(QString::fromLatin1(product.output()).contains(start));
        QCOMPARE(unit.hardware().files().backlight(), 3);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QCOMPARE(askTcp("3x1&4"), QByteArray("OK."));
        QCOMPARE(unit.talk(Wire::Control1, "2x1\r"), QByteArray("OK."));
        QVERIFY(unit.boardShows({2, 1, 1, 3}));
        QVERIFY(product.await("\nt1 ")); // a panel below none is none
        QCOMPARE(product.end(SIGINT), 0);
        const int frames = int(unit.hardware().board().switchFrames().size());
        QVERIFY(unit.rises(8) == frames && unit.rises(4) == frames && unit.rises(0) == 1);
        QVERIFY(unit.hardware().gpio().level(4) == 0 && unit.hardware().gpio().level(8) == 0);
        QCOMPARE(unit.faults(), QByteArray());
    }

    /// However much a client, which stays there, has asked for.
    void aSignalEndsItWithinOneRecall()
    {
        const QByteArray recalls = "1x1." + QByteArray(">r1.").repeated(12);
        for (const bool network : {false, true}) {
            TestUnit unit(4, Panel);
            Product product;
            const std::unique_ptr<RawSocket> client(RawSocket::tcp(MxSite::tcpPort()));
            QVERIFY(!network || client->send(recalls));
            QCOMPARE(network ? client->receive() : unit.talk(Wire::Control0, recalls), QByteArray("OK."));
            QCOMPARE(product.end(SIGTERM), 0);
            // Which each recall says at its end.
            QVERIFY2(product.output().count("LoadSplice") <= 1, product.output());
        }
    }

    /// Of a unit that has more ports than a panel is for.
    void recallsHoldTheStartForASecond()
    {
        TestUnit unit(41, Panel);
        Product product;
        const std::unique_ptr<RawSocket> client(RawSocket::tcp(MxSite::tcpPort()));
        client->send(QByteArray(">r1.").repeated(12));
        QVERIFY(product.await("t1 "));
        const QByteArray said = product.output();
        QCOMPARE(said.left(said.indexOf("t1 ")).count("LoadSplice"), 1);
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

    void aPanelLeavesTheScreenOn()
    {
        TestUnit unit(40, {{"system/keypad", "1"}, {"system/sleep", "2"}});
        Product product;
        const QMxComm observer(false);
        QVERIFY(runUntil([] { return g_mxConfig->sleep == 4; }));
        QCOMPARE(product.end(SIGTERM), 0);
        QVERIFY(!product.output().contains("\nt1 "));
    }

    /// The record's key is taken by a segment that is none: what looks for a record ends with its error.
    void whatMakesNoUnit_data()
    {
        columns<QByteArray, QByteArray, int, QByteArray>("option", "platform", "code", "said");
        row("version", "--version", "none", 0, "mxcontrol " MX_VERSION "\n");
        row("help", "--help", "none", 0, "usage: mxcontrol");
        row("unknown", "--verison", "offscreen", 2, "mxcontrol: no such option: --verison");
        row("no shared memory", "", "offscreen", 1, "shm error");
    }
    void whatMakesNoUnit()
    {
        QFETCH(QByteArray, option);
        QFETCH(QByteArray, platform);
        QFETCH(int, code);
        QFETCH(QByteArray, said);
        const TestUnit unit(4);
        const int foreign = shmget(MxSite::segmentKey(), 4096, IPC_CREAT | 0600);
        Product product(false, QString::fromLatin1(platform), QString(), option);
        QCOMPARE(product.finish(), code);
        shmctl(foreign, IPC_RMID, nullptr);
        const QByteArray output = product.output() + product.errors();
        QVERIFY2(output.contains(said), output);
    }
};

static const RegisteredTest<TestProduct> registered;
#include "testproduct.moc"
