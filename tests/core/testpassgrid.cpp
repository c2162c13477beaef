#include "passgrid.h"
#include "testregistry.h"
#include "uptimeclock.h"

#include <QTest>
#include <chrono>
#include <csignal>
#include <sys/time.h>
#include <vector>

namespace
{
qint64 now()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}
} // namespace

/// When the loops of 10 ms pass, and what is counted in passes.
class TestPassGrid : public QObject
{
    Q_OBJECT

private slots:
    void thePointsAre10MsApart()
    {
        constexpr qint64 point = 10 * 1000 * 1000;
        constexpr qint64 year = 3155760000 * point;
        for (const qint64 now : {qint64(0), 2 * point, 102 * point, year}) {
            QCOMPARE(PassGrid::next(now), now + point);
            QCOMPARE(PassGrid::next(now + 1), now + point);
            QCOMPARE(PassGrid::next(now + point - 1), now + point);
        }
    }

    /// A pass a second, so that every one would show.
    void uptimeIsTakenInOneOf101Passes()
    {
        UptimeClock clock(5000);
        SharedInt32 uptime{};
        std::vector<int> taken;
        for (int pass = 1; pass <= 300; ++pass) {
            clock.step(5000 + 1000 * pass + 999, uptime);
            if (uptime != (taken.empty() ? 0 : taken.back())) {
                taken.push_back(uptime);
            }
        }
        QCOMPARE(taken, (std::vector<int>{50, 151, 252}));
    }

    void signalsDoNotShortenTheWait()
    {
        std::signal(SIGALRM, [](int) {});
        const itimerval each{{0, 1000}, {0, 1000}};
        ::setitimer(ITIMER_REAL, &each, nullptr);
        bool inTime = true;
        for (int i = 0; i < 5; ++i) {
            const qint64 point = PassGrid::next(now());
            PassGrid::wait();
            inTime = inTime && now() >= point;
        }
        const itimerval never{};
        ::setitimer(ITIMER_REAL, &never, nullptr);
        QVERIFY(inTime);
    }
};

static const RegisteredTest<TestPassGrid> registered;

#include "testpassgrid.moc"
