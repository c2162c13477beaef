#include "reply.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <memory>

/// The command language on a unit with 12 ports, line by line: result, and what became of the live map.
class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_unit.reset(new TestUnit(12));
        m_unit->start(false);
    }
    void cleanupTestCase() { m_unit.reset(); }

    void line_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("result");
        QTest::addColumn<QByteArray>("map"); // 1-based inputs, 0 for none; empty: unchanged
        const auto row = [](const char *line, int result, const char *map = "") {
            QTest::newRow(line) << QByteArray(line) << result << QByteArray(map);
        };
        // Before each line every output shows input 9.
        row("1x2", 0, "9 1 9 9 9 9 9 9 9 9 9 9");
        row("3*1&2&5", 0, "3 3 9 9 3 9 9 9 9 9 9 9");
        row("3v1,2,5", 0, "3 3 9 9 3 9 9 9 9 9 9 9");
        row("4b11,", 0, "9 9 9 9 9 9 9 9 9 9 4 9");
        row(">c2x4", 0, "9 9 9 2 9 9 9 9 9 9 9 9");
        row("0m1x2", 0, "9 1 9 9 9 9 9 9 9 9 9 9");
        row("1x2\n", 0, "9 1 9 9 9 9 9 9 9 9 9 9");
        row("1x2x3", 0, "9 9 2 9 9 9 9 9 9 9 9 9");
        row("0x3", 0, "9 9 0 9 9 9 9 9 9 9 9 9");
        row("13x1", 0, "13 9 9 9 9 9 9 9 9 9 9 9");
        row("1x", 0);
        row("1x2x", 0);
        row("1x13&65535&1025", 0);
        row("7all", 0, "7 7 7 7 7 7 7 7 7 7 7 7");
        row("123all", 0, "123 123 123 123 123 123 123 123 123 123 123 123");
        row("0all", 0, "0 0 0 0 0 0 0 0 0 0 0 0");
        row("all1", 0, "1 2 3 4 5 6 7 8 9 10 11 12");
        // Words that are mistyped or cut must not darken a wall.
        for (const char *wrong :
             {"x", "save", "recall", ">c4all", ">call1", "ball", "xball", "x1x2", "1xx2"}) {
            row(wrong, -1);
        }
        for (const char *wrong :
             {"",  "1",  "12",  "abc", "&1x2",  "1&x2",  ">",    ">s",      ">r",    ">c",       "0m",
              "?", "0?", "13?", "x?",  "temp?", "tempo", "all2", "1234all", "beepo", "beepoffx", "12345?"}) {
            QTest::newRow(QByteArray("error ") + wrong) << QByteArray(wrong) << -1 << QByteArray();
        }
        row("temp", -2);
        row("9?", 9);
        row(">c9?", 9);
        row("recall0", 0);
        row("recallx", 0);
        row("recall11", -1);
        row("save11", -1);
        row(">s65535", -1);
    }

    void line()
    {
        QFETCH(QByteArray, line);
        QFETCH(int, result);
        QFETCH(QByteArray, map);
        m_unit->comm().MxCmdOneToAll(8);
        QCOMPARE(m_unit->run(line), result);
        const QByteArray expected = map.isEmpty() ? "9 9 9 9 9 9 9 9 9 9 9 9" : map;
        QByteArray actual;
        for (int o = 0; o < 12; ++o) {
            actual += (o > 0 ? " " : "") + QByteArray::number(static_cast<quint16>(m_unit->shm().map[o] + 1));
        }
        QCOMPARE(actual, expected);
        QCOMPARE(int(m_unit->shm().map[12]), 0);
    }

    void moreNumbersThanAnyLineNeedsAreAnError()
    {
        m_unit->comm().MxCmdOneToAll(8);
        QCOMPARE(m_unit->run("3x" + QByteArray(4094, ',')), 0);
        QCOMPARE(m_unit->run("3x1" + QByteArray(4095, ',')), -1);
        QCOMPARE(m_unit->run("3x1" + QByteArray(65000, '&')), -1);
        QCOMPARE(m_unit->run(QByteArray(65000, ' ') + "3x2"), 0);
        QCOMPARE(int(m_unit->shm().map[0]), 8);
        QCOMPARE(int(m_unit->shm().map[1]), 2);
    }

    void scenesComeBack()
    {
        m_unit->run("5all");
        QCOMPARE(m_unit->run("save3"), 0);
        m_unit->run("all1");
        QCOMPARE(m_unit->run(">s10"), 0);
        m_unit->run("2all");
        QCOMPARE(m_unit->run("recall3"), 0);
        QCOMPARE(int(m_unit->shm().map[11]), 4);
        QVERIFY(m_unit->shm().splicePending.raised());
        QCOMPARE(m_unit->run(">r10"), 0);
        QCOMPARE(int(m_unit->shm().map[11]), 11);
    }

    void beepIsSetAndStored()
    {
        for (const char *beep : {"1", "0"}) {
            QCOMPARE(m_unit->run(*beep == '1' ? "beepon" : "beepoff"), 0);
            QCOMPARE(int(m_unit->shm().beep), *beep - '0');
            QVERIFY(m_unit->fileContent("/home/app/config/setup.ini").contains(QByteArray("beep=") + beep));
        }
    }

    void operationsWithoutACommand()
    {
        QMxComm &comm = m_unit->comm();
        MxShm &shm = m_unit->shm();
        std::vector<quint16> map(12, 6);
        map[3] = map[11] = 2;
        comm.MxCmdMap(map.data());
        comm.MxCmdOneToNone(6);
        comm.MxCmdOneToOne(4, 12);
        comm.MxCmdOneToOne(4, 0xFFFF);
        for (int o = 0; o < 12; ++o) {
            QCOMPARE(quint16(shm.map[o]), o == 3 || o == 11 ? quint16(2) : MxNoInput);
        }
        QCOMPARE(int(shm.map[12]), 0);
        comm.MxCmdAllToNone();
        QCOMPARE(quint16(shm.map[11]), MxNoInput);
        comm.MxCmdOneToSome(1, map.data(), -1);
        QCOMPARE(quint16(shm.map[2]), MxNoInput);
    }

    void replies()
    {
        const auto shm = std::make_unique<MxShm>();
        const auto text = [&](int result) {
            const Reply reply = replyTo(result, *shm);
            return QByteArray(reply.text, reply.size);
        };
        shm->port = 8;
        shm->map[0] = shm->map[3] = shm->map[6] = 2;
        QCOMPARE(text(0), QByteArray("OK."));
        QCOMPARE(text(-1), QByteArray("ERR."));
        QCOMPARE(text(-2), QByteArray("ERR."));
        QCOMPARE(text(9), QByteArray("ERR."));
        QCOMPARE(text(3), QByteArray("3x1&4&7."));
        QCOMPARE(text(2), QByteArray("2x."));
        shm->port = 160;
        QByteArray longest = "160x";
        for (int o = 0; o < 160; ++o) {
            shm->map[o] = 159;
            longest += QByteArray::number(o + 1) + (o < 159 ? "&" : ".");
        }
        QCOMPARE(text(160), longest);
    }

private:
    std::unique_ptr<TestUnit> m_unit;
};

static const RegisteredTest<TestCommands> registered;
#include "testcommands.moc"
