#include "guest.h"
#include "rows.h"
#include "stuckthread.h"
#include "testregistry.h"

#include <QTest>
#include <csignal>
#include <memory>

namespace
{
const std::vector<int> Before = {4, 4, 7, 4, 1, 4, 4, 2};

qint64 watchdogMs()
{
    return shell("systemctl show mxcontrol -p WatchdogUSec --value | sed 's/s$//'").toLongLong() * 1000;
}

/// What an emulated processor takes longer to notice, and to start the program.
int emulationMs()
{
    return shell("systemd-detect-virt") == "qemu" ? 10000 : 0;
}
} // namespace

/// Whatever happens to the program, the service has it back, with the routing as before.
class TestHealing : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(holdsWithin(60000, [] { return answer("1?.") != ""; }));
    }

    void isHealed_data()
    {
        columns<QByteArray, QByteArray, bool>("harm", "thread", "panel");
        row("kill -9", "KILL", "", false);
        row("kill -SEGV", "SEGV", "", false);
        row("kill -STOP", "STOP", "", false);
        row("the control thread is stuck", "", "control", false);
        row("the main loop is stuck", "", "mxcontrol", false);
        row("the panel's LCD thread is stuck", "", "thread_lcd", true);
        row("the panel's key thread is stuck", "", "thread_keypad", true);
        row("kill -9 of a panel", "KILL", "", true);
    }

    void isHealed()
    {
        QFETCH(QByteArray, harm);
        QFETCH(QByteArray, thread);
        QFETCH(bool, panel);
        begin(panel);
        const int program = programId();
        const qint64 harmed = nowUs();
        std::unique_ptr<StuckThread> stuck;
        if (thread.isEmpty()) {
            shell("kill -" + harm + " " + QByteArray::number(program));
        } else {
            stuck.reset(new StuckThread(program, thread));
            QVERIFY(stuck->isStuck());
        }
        const int limitMs = int(watchdogMs()) + 3000 + emulationMs();
        QVERIFY(holdsWithin(limitMs, [&] {
            return (!stuck || stuck->hasEnded()) && programId() != program && answer("7?.") == "7x3.";
        }));
        const qint64 answered = nowUs();
        QVERIFY(g_unit->boardShows(Before, harmed));
        const qint64 shown = g_unit->hardware().board().switchFrames().back().timeUs;
        const qint64 again = serviceTimeUs("ExecMainStartTimestampMonotonic");
        qInfo("started again after %.2f s, the board has the routing after %.2f s, TCP answers after %.2f s",
              (again - harmed) / 1e6, (shown - harmed) / 1e6, (answered - harmed) / 1e6);
        QVERIFY(shown - harmed < limitMs * 1000);
    }

    void itNeverGivesUp()
    {
        begin(false);
        constexpr int Times = 20;
        const qint64 start = nowUs();
        int program = programId();
        for (int i = 0; i < Times; ++i) {
            const int killed = program;
            QVERIFY(killed > 0); // or the test kills itself
            ::kill(killed, SIGKILL);
            // While the next one is not there yet, it is 0.
            QVERIFY(holdsWithin(10000, [&] {
                program = programId();
                return program > 0 && program != killed;
            }));
        }
        QVERIFY(holdsWithin(10000, [] { return answer("7?.") == "7x3."; }));
        qInfo("killed %d times in %.1f s, and it is back", Times, (nowUs() - start) / 1e6);
    }

    void stopsInTime_data()
    {
        columns<QByteArray>("harm");
        row("idle", "");
        row("in the middle of recalls", "recall");
        row("while it hangs", "STOP");
    }

    void stopsInTime()
    {
        QFETCH(QByteArray, harm);
        begin(false);
        if (harm == "STOP") {
            shell("systemctl kill -s STOP mxcontrol");
        } else if (harm == "recall") {
            QCOMPARE(answer("save3."), QByteArray("OK."));
            QCOMPARE(answer("2all."), QByteArray("OK."));
            QVERIFY(g_unit->boardShows(std::vector<int>(8, 2)));
            g_unit->hardware().send(sim::Wire::Control0, "recall3.recall3.recall3.");
            QVERIFY(g_unit->boardShows(Before));
        }
        const qint64 asked = nowUs();
        QCOMPARE(shell("systemctl stop mxcontrol"), QByteArray());
        const qint64 tookUs = nowUs() - asked;
        qInfo("%.2f s, %s", tookUs / 1e6, serviceProperty("Result").constData());
        QVERIFY(tookUs < 3500000);
    }

private:
    /// On a unit with the touchscreen, or with the front panel.
    void begin(bool panel)
    {
        if ((unitFiles().setting("system/keypad") == 1) != panel) {
            QVERIFY(unitFiles().writeSettings({{"system/keypad", panel ? "1" : "0"}}).isDone());
            QCOMPARE(shell("systemctl restart mxcontrol"), QByteArray());
        }
        shell("systemctl start mxcontrol");
        QVERIFY(holdsWithin(20000, [=] { return panel ? answer("1?.") != "" : saidAtUs("t1") != 0; }));
        QCOMPARE(answer("4all.7x3.1x5.2x8."), QByteArray("OK.OK.OK.OK."));
        QVERIFY(g_unit->boardShows(Before));
    }
};

static const RegisteredTest<TestHealing> registered;
#include "testhealing.moc"
