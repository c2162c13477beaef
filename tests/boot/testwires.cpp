#include "ask.h"
#include "guest.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <sys/shm.h>

using sim::Wire;

/// All that the unit reads, writes and listens to, under the hardening of the service.
class TestWires : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(holdsWithin(60000, [] { return answer("1?.") != ""; }));
    }

    void everyWireEndsAtTheBoard()
    {
        QCOMPARE(askTcp("0all."), QByteArray("OK."));
        QCOMPARE(g_unit->talk(Wire::Control0, "2x1."), QByteArray("OK."));
        QCOMPARE(g_unit->talk(Wire::Control1, "3x2."), QByteArray("OK."));
        for (int port = 0; port < 8; ++port) {
            QCOMPARE(askUdp("5x" + QByteArray::number(port + 3), port), QByteArray("OK."));
        }
        QVERIFY(g_unit->boardShows({2, 3, 5, 5, 5, 5, 5, 5}));
    }

    void settingsAreSavedBesideAndRenamed()
    {
        const QByteArray before =
            shell("stat -c %i /home/app/config/setup.ini /etc/eth0.conf /etc/eth1.conf");
        QCOMPARE(askTcp("beepon."), QByteArray("OK."));
        QVERIFY(unitFiles().setting("system/beep") == 1 && unitFiles().setting("system/port") == 8);
        QCOMPARE(shell("cat /etc/eth0.conf"),
                 QByteArray("[IP]\nADDRESS=192.168.0.80\nGATEWAY=192.168.0.1\nNETMASK=255.255.255.0"));
        QCOMPARE(g_unit->talk(Wire::Control1, "beepoff."), QByteArray("OK."));
        QCOMPARE(unitFiles().setting("system/beep"), 0);
        QVERIFY(shell("cat /etc/eth1.conf").contains("ADDRESS=192.168.1.80"));
        QVERIFY(shell("stat -c %i /home/app/config/setup.ini /etc/eth0.conf /etc/eth1.conf") != before);
        QCOMPARE(shell("ls -A /etc /home/app/config | grep -E '^(eth|setup)'"),
                 QByteArray("eth0.conf\neth1.conf\nsetup.ini"));
    }

    /// Twice each, since the files of the first time are there the second time.
    void scenesKeepTheirLayout()
    {
        shell("mkdir -p /home/www/splice");
        for (const QByteArray layout : {"first", "other"}) {
            shell("printf " + layout + " >/home/www/splice/splice.txt");
            QCOMPARE(answer("6x1."), QByteArray("OK."));
            QCOMPARE(answer("save3."), QByteArray("OK."));
            QVERIFY(holdsWithin(5000, [&] { return shell("cat /home/www/splice/splice3.txt") == layout; }));
        }
        for (int i = 0; i < 2; ++i) {
            shell("printf 'of the web side' >/home/www/splice/splice.txt");
            QCOMPARE(askTcp("1all."), QByteArray("OK."));
            QVERIFY(g_unit->boardShows({1, 1, 1, 1, 1, 1, 1, 1}));
            QCOMPARE(i == 0 ? askTcp("recall3.") : g_unit->talk(Wire::Control0, "recall3."),
                     QByteArray("OK."));
            QVERIFY(g_unit->boardShows({6, 3, 5, 5, 5, 5, 5, 5}));
            QCOMPARE(shell("cat /home/www/splice/splice.txt"), QByteArray("other"));
        }
        QVERIFY(g_unit->hardware().waitFor(
            [] { return g_unit->hardware().board().spliceFrames().size() == 2; }, 5000));
        QCOMPARE(shell("stat -c %s /home/app/data/scene3 /home/app/data/splice3.ini"), QByteArray("16\n32"));
    }

    void otherProcessesShareTheRecord()
    {
        constexpr int Map = 69545; // where it is in the record, after the number of ports at its begin
        auto *record = static_cast<unsigned char *>(::shmat(::shmget(1, 0, 0), nullptr, 0));
        QVERIFY(record != reinterpret_cast<unsigned char *>(-1));
        QCOMPARE(int(record[0]), 8);
        record[Map] = 7;
        QVERIFY(g_unit->boardShows({8, 3, 5, 5, 5, 5, 5, 5}));
        const QByteArray frame("\xEB\x90\x00\x07\x01\x02\x00", 7);
        QVERIFY(sendRequest(QByteArray("\x07\x00\x00\x00", 4) + frame));
        QVERIFY(g_unit->hardware().waitFor([] { return !g_unit->hardware().board().passedFrames().empty(); },
                                           5000));
        ::shmdt(record);
    }

    void theKernelsFiles()
    {
        QVERIFY(unitFiles().setTemperature("51900\n").isDone());
        QCOMPARE(g_unit->talk(Wire::Control0, "temp."), QByteArray("temp=51."));
        QCOMPARE(g_unit->hardware().gpio().level(0), 1);
        QCOMPARE(unitFiles().backlight(), 3);
    }

    void nothingIsAmiss()
    {
        QCOMPARE(g_unit->faults(), QByteArray());
        // What Qt says of a console and of devices to come, which the service has not.
        QCOMPARE(shell("journalctl -b -u mxcontrol -o cat --no-pager | grep -iE "
                       "\"can't|cannot|fail|denied|permi|unable\" | "
                       "grep -vE '^(Failed to open tty|Unable to create an udev monitor)'"),
                 QByteArray());
        QCOMPARE(shell("journalctl -b -k --no-pager | grep -E 'type=1326|audit:.*mxcontrol'"), QByteArray());
        qInfo("%s", shell("systemd-analyze security mxcontrol | tail -n 1").constData());
    }
};

static const RegisteredTest<TestWires> registered;
#include "testwires.moc"
