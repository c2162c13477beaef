#include "guest.h"
#include "testregistry.h"

#include <QTest>

/// The packages on a machine that is no unit yet.
class TestInstall : public QObject
{
    Q_OBJECT

private slots:
    void packagesInstall()
    {
        const QByteArray said = shell("dpkg -i /host/*.deb && echo installed");
        QVERIFY2(said.endsWith("installed"), said);
        QCOMPARE(shell("systemctl is-enabled mxcontrol"), QByteArray("enabled"));
        QCOMPARE(shell("ls -d /home/app/config /home/app/data /home/www"),
                 QByteArray("/home/app/config\n/home/app/data\n/home/www"));
        qInfo("%s", shell("dpkg-query -W -f '${Package} ${Version} ${Installed-Size} KiB, ' 'mxcontrol*'")
                        .constData());
    }

    void withoutTheDevicesTheServiceStaysOff()
    {
        shell("systemctl start mxcontrol");
        QCOMPARE(serviceProperty("ActiveState"), QByteArray("inactive"));
        QCOMPARE(serviceProperty("ConditionResult"), QByteArray("no"));
    }

    void cleanupTestCase()
    {
        QVERIFY(unitFiles()
                    .writeSettings({{"system/port", "8"}, {"system/scene", "10"}, {"system/backlight", "2"}})
                    .isDone());
    }
};

static const RegisteredTest<TestInstall> registered;
#include "testinstall.moc"
