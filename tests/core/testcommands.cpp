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

    void lines()
    {
        // Before each line every output shows input 9.
        const char *const unchanged = "9,9,9,9,9,9,9,9,9,9,9,9";
        for (const auto &[line, result, map] :
             {std::tuple("1x2", 0, "9,1,9,9,9,9,9,9,9,9,9,9"),
              {"3*1&2&5", 0, "3,3,9,9,3,9,9,9,9,9,9,9"},
              {"4b11,", 0, "9,9,9,9,9,9,9,9,9,9,4,9"},
              {">c2x4", 0, "9,9,9,2,9,9,9,9,9,9,9,9"},
              {"0x3", 0, "9,9,0,9,9,9,9,9,9,9,9,9"},
              {"13x1", 0, "13,9,9,9,9,9,9,9,9,9,9,9"},
              {"1x", 0, unchanged},
              {"1x13&65535&1025", 0, unchanged},
              {"123all", 0, "123,123,123,123,123,123,123,123,123,123,123,123"},
              {"0all", 0, "0,0,0,0,0,0,0,0,0,0,0,0"},
              {"all1", 0, "1,2,3,4,5,6,7,8,9,10,11,12"},
              {"temp", -2, unchanged},
              {"9?", 9, unchanged},
              {">r10", 0, "1,1,1,1,1,1,1,1,1,1,1,1"}, // a scene that was never saved
              {"save3", 0, unchanged},
              {">s10", 0, unchanged},
              {"recall3", 0, unchanged},
              {">r10", 0, unchanged},
              {"recall0", 0, unchanged},
              {"recallx", 0, unchanged}}) {
            QCOMPARE(outcome(line), line + (": " + QByteArray::number(result)) + " " + map);
        }
        // Words that are mistyped or cut must not darken a wall.
        for (const char *wrong :
             {"x",       "save",  "recall",   ">c4all", ">call1",   "ball",   "xball",  "x1x2",  "1xx2",
              "",        "1",     "12",       "abc",    "&1x2",     "1&x2",   ">",      ">s",    ">r",
              ">c",      "0m",    "?",        "0?",     "13?",      "x?",     "temp?",  "tempo", "all2",
              "1234all", "beepo", "beepoffx", "12345?", "recall11", "save11", ">s65535"}) {
            QCOMPARE(outcome(wrong), wrong + QByteArray(": -1 ") + unchanged);
        }
        QCOMPARE(int(m_unit->shm().map[12]), 0);
    }

    void moreNumbersThanAnyLineNeedsAreAnError()
    {
        m_unit->comm().MxCmdOneToAll(8);
        QCOMPARE(m_unit->run("3x" + QByteArray(4094, ',')), 0);
        QCOMPARE(m_unit->run("3x1" + QByteArray(4095, ',')), -1);
        QCOMPARE(m_unit->run(QByteArray(65000, ' ') + "3x2"), 0);
        QCOMPARE(m_unit->map(), QByteArray("9,3,9,9,9,9,9,9,9,9,9,9"));
    }

private:
    /// The line, its result, and the live map behind it.
    QByteArray outcome(const QByteArray &line) const
    {
        m_unit->comm().MxCmdOneToAll(8);
        const QByteArray result = QByteArray::number(m_unit->run(line));
        return line + ": " + result + " " + m_unit->map();
    }

    std::unique_ptr<TestUnit> m_unit;
};

static const RegisteredTest<TestCommands> registered;
#include "testcommands.moc"
