#include "ask.h"
#include "mxsite.h"
#include "product.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <csignal>
#include <sys/shm.h>

/// A second program is started on a unit that is in use.
class TestTwoPrograms : public QObject
{
    Q_OBJECT

private slots:
    void theUnitGoesOn_data()
    {
        columns<int>("signal");
        row("the first is ended", SIGTERM);
        row("the first is killed", SIGKILL);
    }
    void theUnitGoesOn()
    {
        QFETCH(int, signal);
        TestUnit unit(8, {{"system/keypad", "1"}});
        auto first = std::make_unique<Product>();
        QCOMPARE(askTcp("3x1&8."), QByteArray("OK."));
        const std::vector<int> routing{3, 1, 1, 1, 1, 1, 1, 3};
        QVERIFY(unit.boardShows(routing));
        const int segment = shmget(MxSite::segmentKey(), 0, 0);
        const QMxComm otherProcess(false);
        const QByteArray settings = unit.fileContent("/home/app/config/setup.ini");
        Product second(false);
        QCOMPARE(second.finish(), 1);
        QVERIFY(second.errors().contains("another one runs on this unit"));
        QCOMPARE(unit.map(), QByteArray("3,1,1,1,1,1,1,3"));
        QCOMPARE(unit.fileContent("/home/app/config/setup.ini"), settings);

        // One that comes while the first is about to end takes over.
        QCOMPARE(askTcp("4x2."), QByteArray("OK."));
        QVERIFY(unit.boardShows({3, 4, 1, 1, 1, 1, 1, 3}));
        QVERIFY(runUntil([&] { return unit.fileContent("/home/app/data/scene0").at(2) == 3; }));
        Product third(false);
        first->end(signal);
        QVERIFY(third.await("t0 "));
        QCOMPARE(askTcp("4?."), QByteArray("4x2."));
        QCOMPARE(shmget(MxSite::segmentKey(), 0, 0), segment);
    }
};

static const RegisteredTest<TestTwoPrograms> registered;
#include "testtwoprograms.moc"
