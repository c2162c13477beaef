#include "guest.h"
#include "testregistry.h"

#include <QTest>

namespace
{
QByteArray screen()
{
    return shell("sha256sum </dev/fb0");
}
} // namespace

/// From the kernel's start to the page on the screen.
class TestStart : public QObject
{
    Q_OBJECT

private slots:
    void itIsReadyByItself()
    {
        QVERIFY(holdsWithin(60000, [] { return serviceProperty("ActiveState") == "active"; }));
        QCOMPARE(serviceProperty("Type"), QByteArray("notify"));
        QCOMPARE(serviceProperty("NRestarts"), QByteArray("0"));
        QCOMPARE(answer("1?."), QByteArray("1x1&2&3&4&5&6&7&8."));
        QVERIFY(g_unit->boardShows({1, 1, 1, 1, 1, 1, 1, 1}));
        QCOMPARE(unitFiles().backlight(), 3);

        const qint64 begun = serviceTimeUs("InactiveExitTimestampMonotonic");
        qint64 shown = 0;
        QVERIFY(holdsWithin(20000, [&] { return (shown = saidAtUs("t1")) != 0; }));
        qInfo("since the kernel's start: service begun %.2f s, t0 %.2f s, ready %.2f s, board %.2f s, t1 "
              "%.2f s",
              begun / 1e6, saidAtUs("t0") / 1e6, serviceTimeUs("ActiveEnterTimestampMonotonic") / 1e6,
              g_unit->hardware().board().switchFrames().front().timeUs / 1e6, shown / 1e6);
        qInfo("ours: ready after %.2f s, t1 after %.2f s",
              (serviceTimeUs("ActiveEnterTimestampMonotonic") - begun) / 1e6, (shown - begun) / 1e6);
    }

    /// No cursor blinks in the page, and what is said on the console does not show.
    void thePageHasTheScreenForItself()
    {
        QVERIFY(askPicture("console"));
        QVERIFY(holdsWithin(30000, [] {
            const QByteArray before = screen();
            QTest::qSleep(300);
            return screen() == before;
        }));
        const QByteArray page = screen();
        for (const char *console : {"/dev/tty0", "/dev/tty1", "/dev/console", "/dev/kmsg"}) {
            shell("echo 'something to read' >" + QByteArray(console));
        }
        for (int i = 0; i < 10; ++i) {
            QTest::qSleep(130);
            QVERIFY(screen() == page);
        }
        QCOMPARE(shell("cat /sys/class/graphics/fb0/virtual_size"), QByteArray("1024,600"));
        QVERIFY(askPicture("touchscreen"));
    }

    /// Input 3 to output 1.
    void aTouchSwitches()
    {
        const qint64 now = nowUs();
        g_unit->touchPanel.touch(88, 250);
        g_unit->touchPanel.touch(622, 150);
        QVERIFY(g_unit->boardShows({3, 1, 1, 1, 1, 1, 1, 1}, now));
        QVERIFY(askPicture("touched"));
    }
};

static const RegisteredTest<TestStart> registered;
#include "teststart.moc"
