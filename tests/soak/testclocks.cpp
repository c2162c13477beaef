#include "ask.h"
#include "product.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"
#include "tickcount.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryFile>
#include <QTest>
#include <csignal>
#include <sched.h>

using sim::Wire;

namespace
{
constexpr qint64 Year = 31557600;

/// What is started from now on has a monotonic clock that shows so many seconds more; false where the kernel
/// does not do that. This process keeps its own.
bool shiftMonotonicClock(qint64 seconds)
{
    QFile offsets(QStringLiteral("/proc/self/timens_offsets"));
    const QByteArray line = "monotonic " + QByteArray::number(seconds) + " 0\n";
    return ::unshare(CLONE_NEWTIME) == 0 && offsets.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           offsets.write(line) == line.size();
}

/// Its longest wait for a route, from the command to the board, in ms; -1 when a route did not arrive.
qint64 longestRoute(TestUnit &unit, int routes)
{
    qint64 longest = 0;
    for (int i = 0; i < routes; ++i) {
        const int input = 2 + i % 3;
        const QByteArray command = QByteArray::number(input) + "x1.";
        QElapsedTimer elapsed;
        elapsed.start();
        const QByteArray answer = i % 2 == 0 ? askTcp(command) : unit.talk(Wire::Control0, command);
        if (answer != "OK." || !unit.boardShows({input, 1, 1, 1})) {
            return -1;
        }
        longest = qMax(longest, elapsed.elapsed());
    }
    return longest;
}
} // namespace

/// The program's clocks, where they wrap and when someone sets them.
class TestClocks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_date.open());
        setDate(0);
        qputenv("MX_DATE", m_date.fileName().toLocal8Bit());
        qputenv("LD_PRELOAD", SYSTEM_DATE);
    }
    void cleanupTestCase() { qunsetenv("LD_PRELOAD"); }

    /// Ticks are 32 bits of milliseconds. At the wrap one pause of the sender ends early.
    void ticksWrap()
    {
        const quint32 before = 3000;
        if (!shiftMonotonicClock((qint64(1) << 32) / 1000 - GetTickCount() / 1000 - before / 1000)) {
            QTest::qSkip("no time namespaces here", __FILE__, __LINE__);
            return;
        }
        TestUnit unit(4, {{"system/keypad", "1"}});
        Product product;
        QElapsedTimer elapsed;
        elapsed.start();
        const qint64 longest = longestRoute(unit, 10);
        qInfo("routes for %lld ms, the longest %lld ms; %s", elapsed.elapsed(), longest,
              unit.faults().constData());
        QVERIFY(elapsed.elapsed() > before);
        QVERIFY(longest >= 0 && longest < 1200);
        QVERIFY(unit.faults().count('\n') <= 1);
        QCOMPARE(product.end(SIGTERM), 0);
        shiftMonotonicClock(0);
    }

    /// By years, before the start and while it runs. Its seconds follow the date, in 32 bits.
    void theDateIsSet_data()
    {
        columns<int, int>("first", "then");
        row("on by 10 years", 0, 10);
        row("back by 20 years", 0, -20);
        row("on by 80 years, beyond 31 bits", 0, 80);
        row("started after 2038", 20, 21);
        row("back before 1970", 20, -60);
    }
    void theDateIsSet()
    {
        QFETCH(int, first);
        QFETCH(int, then);
        setDate(first * Year);
        TestUnit unit(4, {{"system/keypad", "1"}});
        Product product;
        const QByteArray year =
            QDateTime::currentDateTimeUtc().addSecs(first * Year).toString(QStringLiteral("yyyy")).toLatin1();
        QVERIFY2(product.output().contains("t0 " + year), product.output());
        const QMxComm otherProcess(false);
        QVERIFY(runUntil([&] { return unit.shm().uptime > 0; }));
        setDate(then * Year);
        const qint64 longest = longestRoute(unit, 3);
        const auto expected = static_cast<qint32>((then - first) * Year);
        QVERIFY(runUntil([&] { return qAbs(qint64(unit.shm().uptime) - expected) < 60; }));
        qInfo("the longest route %lld ms, uptime %d", longest, int(unit.shm().uptime));
        QVERIFY(longest >= 0 && longest < 1200);
        QCOMPARE(unit.faults(), QByteArray());
        QCOMPARE(product.end(SIGTERM), 0);
    }

private:
    void setDate(qint64 seconds)
    {
        m_date.seek(0);
        m_date.write(reinterpret_cast<const char *>(&seconds), sizeof seconds);
        m_date.flush();
    }
    QTemporaryFile m_date;
};

static const RegisteredTest<TestClocks> registered;
#include "testclocks.moc"
