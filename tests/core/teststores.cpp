#include "captionstore.h"
#include "rows.h"
#include "scenestore.h"
#include "settingsstore.h"
#include "testregistry.h"
#include "testunit.h"

#include <QDir>
#include <QTest>
#include <climits>
#include <cstring>
#include <memory>

namespace
{
constexpr char Setup[] = "/home/app/config/setup.ini";
constexpr char Captions[] = "/home/app/config/caption.ini";

std::unique_ptr<MxShm> emptyRecord(int ports = 8, int scenes = 10)
{
    auto shm = std::make_unique<MxShm>();
    shm->port = ports;
    shm->scene = scenes;
    return shm;
}

using Field = SharedInt32 MxShm::*;
} // namespace
Q_DECLARE_METATYPE(Field)

/// What is kept in files: settings, addresses, captions, scenes and splices.
class TestStores : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_unit.reset(new TestUnit);
        m_shm = emptyRecord();
    }
    void cleanup() { m_unit.reset(); }

    void numbers_data()
    {
        columns<QByteArray, Field, int>("line", "field", "value");
        row("none", "", &MxShm::port, 2);
        row("too many ports", "port=161", &MxShm::port, 160);
        row("far too many ports", "port=99999999999\n", &MxShm::port, 160);
        row("no number", "port=eight", &MxShm::port, 2);
        row("too few scenes", "scene=0", &MxShm::scene, 10);
        row("too many scenes", "scene=41", &MxShm::scene, 40);
        row("any backlight", "backlight=-1", &MxShm::backlight, -1);
        row("a speed of the list", "baudrate=96000", &MxShm::baudrate, 96000);
        row("any other speed", "baudrate=-1", &MxShm::baudrate, 115200);
    }
    void numbers()
    {
        QFETCH(QByteArray, line);
        QFETCH(Field, field);
        m_unit->writeFile(Setup, "[system]\n" + line);
        SettingsStore::load(*m_shm);
        QTEST(int(m_shm.get()->*field), "value");
    }

    void textsAreBoundedAndHaveDefaults()
    {
        m_unit->writeFile(Setup, "[system]\nimages=\n");
        SettingsStore::load(*m_shm);
        QCOMPARE(m_shm->images.get().text, "default");
        QCOMPARE(m_shm->language.get().text, "en");
        m_unit->writeFile(Setup, "[system]\nimages=" + QByteArray(600, 'i') + "\nlanguage=50%%\n");
        SettingsStore::load(*m_shm);
        QCOMPARE(QByteArray(m_shm->images.get().text), QByteArray(511, 'i'));
        QCOMPARE(m_shm->language.get().text, "50%");
    }

    void addressesHaveTheirDefaultsAsAGroup()
    {
        m_unit->writeFile("/etc/eth0.conf", "[IP]\nNETMASK=255.0.0.0\nGATEWAY=10.0.0.1\n");
        m_unit->writeFile("/etc/eth1.conf", "[IP]\nADDRESS=" + QByteArray(40, '1') + "\n");
        SettingsStore::load(*m_shm);
        QCOMPARE(m_shm->eth0Address.get().text, "192.168.0.80");
        QCOMPARE(m_shm->eth0Netmask.get().text, "255.255.255.0");
        QCOMPARE(m_shm->eth0Gateway.get().text, "192.168.0.1");
        QCOMPARE(QByteArray(m_shm->eth1Address.get().text), QByteArray(31, '1'));
        QCOMPARE(m_shm->eth1Netmask.get().text, "");
        QCOMPARE(m_shm->eth1Gateway.get().text, "");
    }

    void savingKeepsWhatIsNotSaved()
    {
        m_unit->writeFile(Setup,
                          "[system]\nport=16\nscene=20\nkeypad=1\nbaudrate=9600\nimages=dark\nlanguage=cn\n"
                          "beep=0\n\n[other]\nkey=value\n");
        m_unit->writeFile("/home/app/config/setup.ini.lck", "left by a save that was cut off");
        m_unit->writeFile("/home/app/config/setup.txt", "not ours");
        SettingsStore::load(*m_shm);
        m_shm->beep = 1;
        m_shm->backlight = 6;
        m_shm->sleep = 3;
        m_shm->port = 2;
        m_shm->eth1Address.set("10.1.2.3");
        SettingsStore::save(*m_shm);

        const auto loaded = emptyRecord();
        SettingsStore::load(*loaded);
        QCOMPARE(loaded->eth1Address.get().text, "10.1.2.3");
        QCOMPARE(loaded->eth1Gateway.get().text, "192.168.1.1");
        for (const char *line : {"port=16", "scene=20", "keypad=1", "baudrate=9600", "images=dark",
                                 "language=cn", "beep=1", "backlight=6", "sleep=3", "key=value"}) {
            QVERIFY2(m_unit->fileContent(Setup).contains(line + QByteArray("\n")), line);
        }
        QCOMPARE(QDir(m_unit->path("/home/app/config")).entryList(QDir::Files),
                 (QStringList{QStringLiteral("setup.ini"), QStringLiteral("setup.txt")}));
    }

    void captions()
    {
        m_unit->writeFile(
            Captions,
            "[caption]\ninput1=Camera 1\ninput2=\noutput3=\"50% & \\\"more\\\", =\"\noutput8=B\\xfcro\n"
            "scene10=" +
                QByteArray(40, 's') + "\ninput9=beyond\n");
        CaptionStore::load(*m_shm);
        QCOMPARE(m_shm->inputCaption[0].get().text, "Camera 1");
        QCOMPARE(m_shm->inputCaption[1].get().text, "2");
        QCOMPARE(m_shm->outputCaption[2].get().text, "50% & \"more\", =");
        QCOMPARE(m_shm->outputCaption[7].get().text, "B\374ro");
        QCOMPARE(QByteArray(m_shm->sceneCaption[9].get().text), QByteArray(31, 's'));
        QCOMPARE(m_shm->sceneCaption[2].get().text, "3");
        QCOMPARE(m_shm->inputCaption[8].get().text, "");

        m_shm->outputCaption[7].set("kitchen");
        CaptionStore::save(*m_shm);
        const auto loaded = emptyRecord(9);
        CaptionStore::load(*loaded);
        QVERIFY(std::memcmp(loaded->inputCaption, m_shm->inputCaption, 8 * 32) == 0);
        QVERIFY(std::memcmp(loaded->outputCaption, m_shm->outputCaption, 8 * 32) == 0);
        QCOMPARE(QByteArray(loaded->sceneCaption[9].get().text), QByteArray(31, 's'));
        QCOMPARE(loaded->inputCaption[8].get().text, "beyond");
    }

    void sceneZeroIsTheLiveMapAlone()
    {
        SceneStore::save(*m_shm, 0);
        QCOMPARE(QDir(m_unit->path("/home/app/data")).entryList(QDir::Files),
                 QStringList{QStringLiteral("scene0")});
        QVERIFY(!QDir(m_unit->path("/home/www/splice")).exists());
        m_shm->map[0] = 5;
        SceneStore::recall(*m_shm, 0, atOnce);
        QCOMPARE(int(m_shm->map[0]), 5);
        SceneStore::save(*m_shm, 1);
        QCOMPARE(QDir(m_unit->path("/home/www/splice")).entryList(QDir::Files), QStringList());
    }

    void numbersOutOfRangeTouchNothing()
    {
        for (const int number : {-1, 11, 40, 63, 64, 65535, INT_MAX, INT_MIN}) {
            SceneStore::save(*m_shm, number);
            SceneStore::recall(*m_shm, number, atOnce);
            SceneStore::saveSplice(*m_shm, number);
            SceneStore::loadSplice(*m_shm, number);
        }
        QVERIFY(QDir(m_unit->path("/home/app/data")).entryList(QDir::Files).isEmpty());
        QVERIFY(!QDir(m_unit->path("/home/www/splice")).exists());
        QVERIFY(!m_shm->splicePending.raised());
        const auto *bytes = reinterpret_cast<const char *>(m_shm.get());
        QVERIFY(std::all_of(bytes + 28, bytes + sizeof(MxShm), [](char b) { return b == 0; }));
    }

    void printing()
    {
        m_unit->start(false);
        QMxComm &comm = m_unit->comm();
        QCOMPARE(comm.MxPrintf("/home/file", "%d%s", 12, "ab"), 4);
        QCOMPARE(m_unit->fileContent("/home/file"), QByteArray("12ab"));
        QVERIFY(comm.MxPrintf("/home/missing/file", "x") < 0);
        QCOMPARE(comm.MxPrintf("/home/long", "%s", QByteArray(5000, 'x').constData()), 4095);
    }

private:
    std::unique_ptr<TestUnit> m_unit;
    std::unique_ptr<MxShm> m_shm;
};

static const RegisteredTest<TestStores> registered;
#include "teststores.moc"
