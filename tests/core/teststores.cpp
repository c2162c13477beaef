#include "captionstore.h"
#include "scenestore.h"
#include "settingsstore.h"
#include "testregistry.h"
#include "testunit.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <climits>
#include <cstring>
#include <memory>

namespace
{
constexpr char Setup[] = "/home/app/config/setup.ini";
constexpr char Captions[] = "/home/app/config/caption.ini";
constexpr char LayoutText[] = "/home/www/splice/splice.txt";

std::unique_ptr<MxShm> emptyRecord(int ports = 8, int scenes = 10)
{
    auto shm = std::make_unique<MxShm>();
    shm->port = ports;
    shm->scene = scenes;
    return shm;
}

QByteArray text(const char *copy)
{
    return QByteArray(copy);
}
} // namespace

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
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("offset"); // of the field
        QTest::addColumn<int>("value");
        const auto row = [](const char *line, int offset, int value) {
            QTest::newRow(line) << QByteArray(line) << offset << value;
        };
        row("", 0, 2);
        row("port=1", 0, 2);
        row("port=500", 0, 160);
        row("port=99999999999", 0, 160);
        row("port=eight", 0, 2);
        row("scene=0", 4, 10);
        row("scene=41", 4, 40);
        row("keypad=-5", 8, -5);
        row("backlight=-1", 16, -1);
        row("baudrate=96000", 24, 96000);
        row("baudrate=100000", 24, 115200);
        row("baudrate=-1", 24, 115200);
        row("beep=1", 24, 115200);
    }

    void numbers()
    {
        QFETCH(QByteArray, line);
        QFETCH(int, offset);
        QFETCH(int, value);
        m_unit->writeFile(Setup, "[system]\n" + line + "\n");
        SettingsStore::load(*m_shm);
        qint32 field = 0;
        std::memcpy(&field, reinterpret_cast<const char *>(m_shm.get()) + offset, 4);
        QCOMPARE(field, value);
    }

    void textsAreBoundedAndHaveDefaults()
    {
        m_unit->writeFile(Setup, "[system]\nimages=\n");
        SettingsStore::load(*m_shm);
        QCOMPARE(text(m_shm->images.get()), QByteArray("default"));
        QCOMPARE(text(m_shm->language.get()), QByteArray("en"));
        m_unit->writeFile(Setup, "[system]\nimages=" + QByteArray(600, 'i') + "\nlanguage=50%%\n");
        SettingsStore::load(*m_shm);
        QCOMPARE(text(m_shm->images.get()), QByteArray(511, 'i'));
        QCOMPARE(text(m_shm->language.get()), QByteArray("50%"));
    }

    void addressesHaveTheirDefaultsAsAGroup()
    {
        m_unit->writeFile("/etc/eth0.conf", "[IP]\nNETMASK=255.0.0.0\nGATEWAY=10.0.0.1\n");
        m_unit->writeFile("/etc/eth1.conf", "[IP]\nADDRESS=" + QByteArray(40, '1') + "\n");
        SettingsStore::load(*m_shm);
        QCOMPARE(text(m_shm->eth0Address.get()), QByteArray("192.168.0.80"));
        QCOMPARE(text(m_shm->eth0Netmask.get()), QByteArray("255.255.255.0"));
        QCOMPARE(text(m_shm->eth0Gateway.get()), QByteArray("192.168.0.1"));
        QCOMPARE(text(m_shm->eth1Address.get()), QByteArray(31, '1'));
        QCOMPARE(text(m_shm->eth1Netmask.get()), QByteArray());
        QCOMPARE(text(m_shm->eth1Gateway.get()), QByteArray());
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
        QCOMPARE(int(loaded->port), 16);
        QCOMPARE(int(loaded->scene), 20);
        QCOMPARE(int(loaded->keypad), 1);
        QCOMPARE(int(loaded->baudrate), 9600);
        QCOMPARE(text(loaded->images.get()), QByteArray("dark"));
        QCOMPARE(text(loaded->language.get()), QByteArray("cn"));
        QCOMPARE(int(loaded->beep), 1);
        QCOMPARE(int(loaded->backlight), 6);
        QCOMPARE(int(loaded->sleep), 3);
        QCOMPARE(text(loaded->eth1Address.get()), QByteArray("10.1.2.3"));
        QCOMPARE(text(loaded->eth0Gateway.get()), QByteArray("192.168.0.1"));
        QVERIFY(m_unit->fileContent(Setup).contains("key=value"));
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
        QCOMPARE(text(m_shm->inputCaption[0].get()), QByteArray("Camera 1"));
        QCOMPARE(text(m_shm->inputCaption[1].get()), QByteArray("2"));
        QCOMPARE(text(m_shm->outputCaption[2].get()), QByteArray("50% & \"more\", ="));
        QCOMPARE(text(m_shm->outputCaption[7].get()), QByteArray("B\xFC"
                                                                 "ro"));
        QCOMPARE(text(m_shm->sceneCaption[9].get()), QByteArray(31, 's'));
        QCOMPARE(text(m_shm->sceneCaption[2].get()), QByteArray("3"));
        QCOMPARE(text(m_shm->inputCaption[8].get()), QByteArray());

        m_shm->outputCaption[7].set("kitchen");
        CaptionStore::save(*m_shm);
        const auto loaded = emptyRecord(9);
        CaptionStore::load(*loaded);
        for (int i = 0; i < 8; ++i) {
            QCOMPARE(text(loaded->inputCaption[i].get()), text(m_shm->inputCaption[i].get()));
            QCOMPARE(text(loaded->outputCaption[i].get()), text(m_shm->outputCaption[i].get()));
        }
        QCOMPARE(text(loaded->sceneCaption[9].get()), QByteArray(31, 's'));
        QCOMPARE(text(loaded->inputCaption[8].get()), QByteArray("beyond"));
    }

    void scenesAndTheirSplices()
    {
        m_unit->makeFolder("/home/www/splice");
        m_unit->writeFile(LayoutText, QByteArray(3000, 'L'));
        m_unit->writeFile("/home/www/splice/splice3.txt", QByteArray(4000, 'o'));
        m_unit->writeFile("/home/app/data/scene3", QByteArray(20, 'o'));
        for (int o = 0; o < 8; ++o) {
            m_shm->map[o] = static_cast<quint16>(0x100 * o + 7);
            m_shm->spliceData[o] = 0x01020300U + static_cast<quint32>(o);
        }
        SceneStore::save(*m_shm, 3);
        const QByteArray map = QByteArray::fromHex("07000701070207030704070507060707");
        // Files are never cut: a longer tail of before stays.
        QCOMPARE(m_unit->fileContent("/home/app/data/scene3"), map + "oooo");
        QCOMPARE(m_unit->fileContent("/home/app/data/splice3.ini").left(8),
                 QByteArray::fromHex("0003020101030201"));
        QCOMPARE(m_unit->fileContent("/home/app/data/splice3.ini").size(), 32);
        QCOMPARE(m_unit->fileContent("/home/www/splice/splice3.txt"),
                 QByteArray(3000, 'L') + QByteArray(1000, 'o'));

        const auto loaded = emptyRecord();
        SceneStore::load(*loaded);
        QVERIFY(SceneStore::recallMap(*loaded, 3));
        SceneStore::loadSplice(*loaded, 3);
        for (int o = 0; o < 8; ++o) {
            QCOMPARE(quint16(loaded->map[o]), quint16(m_shm->map[o]));
            QCOMPARE(quint32(loaded->spliceData[o]), quint32(m_shm->spliceData[o]));
        }
        QVERIFY(loaded->splicePending.raised());
        QCOMPARE(m_unit->fileContent(LayoutText), QByteArray(3000, 'L') + QByteArray(1000, 'o'));
        // A scene without companions: all words 0, and an empty layout.
        SceneStore::loadSplice(*loaded, 4);
        QCOMPARE(quint32(loaded->spliceData[0]), 0U);
        QCOMPARE(m_unit->fileContent(LayoutText), QByteArray());
    }

    void sceneZeroIsTheLiveMapAlone()
    {
        SceneStore::save(*m_shm, 0);
        QCOMPARE(QDir(m_unit->path("/home/app/data")).entryList(QDir::Files),
                 QStringList{QStringLiteral("scene0")});
        QVERIFY(!QDir(m_unit->path("/home/www/splice")).exists());
        m_shm->map[0] = 5;
        QVERIFY(!SceneStore::recallMap(*m_shm, 0));
        QCOMPARE(int(m_shm->map[0]), 5);
        SceneStore::save(*m_shm, 1);
        QCOMPARE(QDir(m_unit->path("/home/www/splice")).entryList(QDir::Files), QStringList());
    }

    void numbersOutOfRangeTouchNothing()
    {
        for (const int n : {-1, 11, 40, 63, 64, 65535, INT_MAX, INT_MIN}) {
            SceneStore::save(*m_shm, n);
            QVERIFY(!SceneStore::recallMap(*m_shm, n));
            SceneStore::saveSplice(*m_shm, n);
            SceneStore::loadSplice(*m_shm, n);
        }
        QVERIFY(QDir(m_unit->path("/home/app/data")).entryList(QDir::Files).isEmpty());
        QVERIFY(!QDir(m_unit->path("/home/www/splice")).exists());
        QVERIFY(!m_shm->splicePending.raised());
        const auto *bytes = reinterpret_cast<const char *>(m_shm.get());
        QVERIFY(std::all_of(bytes + 28, bytes + sizeof(MxShm), [](char b) { return b == 0; }));
    }

    /// Folders where files are expected, and files that are too short or too long.
    void filesOfTheWrongKind()
    {
        for (const char *file :
             {Setup, Captions, "/etc/eth0.conf", "/home/app/data/scene1", "/home/app/data/splice1.ini",
              "/home/www/splice/splice1.txt", "/home/www/splice/splice.txt"}) {
            QFile::remove(m_unit->path(file));
            m_unit->makeFolder(file);
        }
        m_unit->writeFile("/home/app/data/scene2", QByteArray::fromHex("050006"));
        m_unit->writeFile("/home/app/data/scene4", QByteArray(5000, '\x03'));
        m_shm->sceneMap[4][8] = 0x1234;
        m_shm->port = 8;
        SettingsStore::load(*m_shm);
        QCOMPARE(int(m_shm->port), 2);
        m_shm->port = 8;
        CaptionStore::load(*m_shm);
        QCOMPARE(text(m_shm->inputCaption[4].get()), QByteArray("5"));
        SceneStore::load(*m_shm);
        QCOMPARE(int(m_shm->sceneMap[1][0]), 0);
        QCOMPARE(int(m_shm->sceneMap[2][0]), 5);
        QCOMPARE(int(m_shm->sceneMap[2][1]), 6);
        QCOMPARE(int(m_shm->sceneMap[2][2]), 0);
        QCOMPARE(int(m_shm->sceneMap[4][7]), 0x0303);
        QCOMPARE(int(m_shm->sceneMap[4][8]), 0x1234);
        SceneStore::save(*m_shm, 1);
        SceneStore::loadSplice(*m_shm, 1);
        SettingsStore::save(*m_shm);
        CaptionStore::save(*m_shm);
        QVERIFY(QDir(m_unit->path(Setup)).exists());
    }

    void smallFileHelpers()
    {
        m_unit->start(false);
        QMxComm &comm = m_unit->comm();
        unsigned char buffer[4] = {1, 1, 1, 1};
        QVERIFY(comm.MxRead("/home/missing", buffer, 4) < 0);
        QCOMPARE(QByteArray(reinterpret_cast<char *>(buffer), 4), QByteArray(4, '\0'));
        QCOMPARE(comm.MxWrite("/home/file", "0123456789"), 10);
        QCOMPARE(comm.MxPrintf("/home/file", "%d%s", 12, "ab"), 4);
        QCOMPARE(m_unit->fileContent("/home/file"), QByteArray("12ab456789"));
        QVERIFY(comm.MxPrintf("/home/missing/file", "x") < 0);
        QCOMPARE(comm.MxPrintf("/home/long", "%s", QByteArray(5000, 'x').constData()), 4095);
    }

private:
    std::unique_ptr<TestUnit> m_unit;
    std::unique_ptr<MxShm> m_shm;
};

static const RegisteredTest<TestStores> registered;
#include "teststores.moc"
