#include "guest.h"
#include "testregistry.h"

#include <QTest>

/// The unit operated from its front panel.
class TestPanel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(unitFiles().writeSettings({{"system/keypad", "1"}}).isDone());
        QCOMPARE(shell("systemctl restart mxcontrol"), QByteArray());
    }

    /// What it draws on its screen begins on the LCD.
    void theLcdShowsTheScreen()
    {
        QVERIFY(g_unit->hardware().waitFor([] { return g_unit->hardware().lcd().isOn(); }, 10000));
        QVERIFY(askPicture("panel"));
        QVERIFY(g_unit->hardware().waitFor([] { return g_unit->hardware().keys().isLit(1); }, 10000));
        QVERIFY(g_unit->hardware().waitFor(
            [] { return g_unit->hardware().lcd().frameCount() >= 2 && g_unit->hardware().panelLight(); },
            5000));
    }

    void keysAndRemoteSwitch()
    {
        QCOMPARE(answer("1all."), QByteArray("OK."));
        const auto frames = g_unit->hardware().lcd().frameCount();
        for (const int key : {3, 52}) {
            g_unit->hardware().pressKey(key);
            g_unit->hardware().releaseKey(key);
        }
        QVERIFY(g_unit->boardShows({1, 3, 1, 1, 1, 1, 1, 1}));
        QVERIFY(g_unit->hardware().waitFor([] { return g_unit->hardware().keys().isLit(52); }, 5000));
        QVERIFY(g_unit->hardware().lcd().frameCount() > frames);
        for (const char key : {'5', 'X', '1', 'N'}) {
            g_unit->hardware().pressRemote(key);
        }
        QVERIFY(g_unit->boardShows({5, 3, 1, 1, 1, 1, 1, 1}));
        QCOMPARE(g_unit->faults(), QByteArray());
    }

    void cleanupTestCase()
    {
        QVERIFY(unitFiles().writeSettings({{"system/keypad", "0"}}).isDone());
        QCOMPARE(shell("systemctl restart mxcontrol"), QByteArray());
    }
};

static const RegisteredTest<TestPanel> registered;
#include "testpanel.moc"
