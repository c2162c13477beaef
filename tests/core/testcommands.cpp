#include "rows.h"
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
        m_unit->start(false, atOnce);
    }
    void cleanupTestCase() { m_unit.reset(); }

    void lines_data()
    {
        columns<QByteArray, int, QByteArray>("line", "result", "map");
        const char *const same = "9,9,9,9,9,9,9,9,9,9,9,9"; // as it was before
        row("to one output", "1x2", 0, "9,1,9,9,9,9,9,9,9,9,9,9");
        row("to some", "3*1&2&12", 0, "3,3,9,9,9,9,9,9,9,9,9,3");
        row("dark", "0x3", 0, "9,9,0,9,9,9,9,9,9,9,9,9");
        row("input beyond the matrix", "13x1", 0, "13,9,9,9,9,9,9,9,9,9,9,9");
        row("outputs beyond the matrix", "2x0&13&65535&1025", 0, same);
        row("to all", "123all", 0, "123,123,123,123,123,123,123,123,123,123,123,123");
        row("all dark", "0all", 0, "0,0,0,0,0,0,0,0,0,0,0,0");
        row("one to one", "all1", 0, "1,2,3,4,5,6,7,8,9,10,11,12");
        row("a word cut short darkens nothing", "recall", -1, same);
        row("temperature", "temp", -2, same);
        row("question", "12?", 12, same);
        row("question beyond the matrix", "13?", -1, same);
        row("a scene that was never saved", ">r10", 0, "1,1,1,1,1,1,1,1,1,1,1,1");
        row("save the last scene", "save10", 0, same);
        row("scene 0", "recall0", 0, same);
        row("no scene", "recallx", 0, same);
        row("recall beyond the scenes", "recall11", -1, same);
        row("save beyond the scenes", ">s11", -1, same);
        row("save beyond the record", "save65535", -1, same);
    }

    void lines()
    {
        QFETCH(QByteArray, line);
        m_unit->comm().MxCmdOneToAll(8);
        QTEST(m_unit->run(line), "result");
        QTEST(m_unit->map(), "map");
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
    std::unique_ptr<TestUnit> m_unit;
};

static const RegisteredTest<TestCommands> registered;
#include "testcommands.moc"
