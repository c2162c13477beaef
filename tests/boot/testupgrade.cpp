#include "guest.h"
#include "testregistry.h"

#include <QProcess>
#include <QTest>

namespace
{
constexpr char Data[] =
    "cat /home/app/config/* /home/app/data/scene3 /etc/eth?.conf /home/www/splice/splice3.txt | sha256sum";
constexpr char Version[] = "dpkg-query -W -f '${Version}' mxcontrol";
} // namespace

/// The next version of the packages, and their removal.
class TestUpgrade : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(unitFiles().writeSettings({{"system/port", "8"}}).isDone());
        shell("printf '[caption]\\ninput1=Camera\\nscene3=Show\\n' >/home/app/config/caption.ini");
        QCOMPARE(shell("systemctl restart mxcontrol"), QByteArray());
        QVERIFY(holdsWithin(10000, [] { return answer("2all.5x4.") == "OK.OK."; }));
        QVERIFY(g_unit->boardShows({2, 2, 2, 5, 2, 2, 2, 2}));
        QCOMPARE(answer("save3."), QByteArray("OK."));
    }

    void theNextVersionKeepsEverything()
    {
        const QByteArray data = shell(Data);
        const QByteArray version = shell(Version);
        const int program = programId();
        const qint64 begun = nowUs();
        QProcess upgrade;
        upgrade.start(QStringLiteral("sh"),
                      {QStringLiteral("-c"), QStringLiteral("dpkg -i /host/next/*.deb")});
        QVERIFY(holdsWithin(60000, [] { return answer("2?.").isEmpty(); }));
        const qint64 away = nowUs();
        QVERIFY(holdsWithin(60000, [&] { return programId() != program && answer("5?.") == "5x4."; }));
        const qint64 back = nowUs();
        QVERIFY(g_unit->boardShows({2, 2, 2, 5, 2, 2, 2, 2}, away));
        QVERIFY(upgrade.waitForFinished(60000) && upgrade.exitCode() == 0);
        QVERIFY(shell(Version) != version);
        QCOMPARE(shell(Data), data);
        QCOMPARE(answer("1all.recall3."), QByteArray("OK."));
        QVERIFY(g_unit->boardShows({2, 2, 2, 5, 2, 2, 2, 2}));
        qInfo("from %s to %s in %.1f s, away for %.2f s", version.constData(), shell(Version).constData(),
              (nowUs() - begun) / 1e6, (back - away) / 1e6);
    }
};

/// Off again: what stays is the unit's own.
class TestRemoval : public QObject
{
    Q_OBJECT

private slots:
    void theDataStays()
    {
        const QByteArray data = shell(Data);
        for (const char *how : {"--remove", "--purge"}) {
            const QByteArray said =
                shell(QByteArray("dpkg ") + how + " mxcontrol mxcontrol-data && echo gone");
            QVERIFY2(said.endsWith("gone"), said);
            QCOMPARE(programId(), 0);
            QCOMPARE(answer("1?."), QByteArray());
            QCOMPARE(shell(Data), data);
        }
        const QByteArray left =
            shell("find / -xdev -iname '*mxcontrol*' -not -path '/var/log/*' -not -path '/etc/systemd/"
                  "system/mxcontrol.service.d*'");
        QCOMPARE(left, QByteArray());
        QCOMPARE(shell("systemctl is-enabled mxcontrol 2>&1 | grep -c 'No such file'"), QByteArray("1"));
    }
};

static const RegisteredTest<TestUpgrade> upgrade;
static const RegisteredTest<TestRemoval> removal;
#include "testupgrade.moc"
