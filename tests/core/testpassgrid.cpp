#include "passgrid.h"
#include "rows.h"
#include "testregistry.h"
#include "uptimeclock.h"

#include <QTest>
#include <atomic>
#include <chrono>
#include <csignal>
#include <pthread.h>
#include <thread>
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
    void nextPoint_data()
    {
        columns<qint64, qint64>("now", "next");
        constexpr qint64 ms = 1000 * 1000;
        constexpr qint64 year = 31557600000 * ms;
        row("the first", qint64(0), 10 * ms);
        row("right before a point", 20 * ms - 1, 20 * ms);
        row("at a point", 20 * ms, 30 * ms);
        row("right behind a point", 20 * ms + 1, 30 * ms);
        row("after a pass of a second", 1023 * ms, 1030 * ms);
        row("after a year", year + 1, year + 10 * ms);
    }
    void nextPoint()
    {
        QFETCH(qint64, now);
        QTEST(PassGrid::next(now), "next");
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
        struct sigaction interrupt {
        };
        interrupt.sa_handler = [](int) {};
        sigaction(SIGUSR2, &interrupt, nullptr);
        std::atomic<bool> ended{false};
        const pthread_t waiting = pthread_self();
        std::thread sender([&] {
            while (!ended) {
                pthread_kill(waiting, SIGUSR2);
            }
        });
        bool inTime = true;
        for (int i = 0; i < 5; ++i) {
            const qint64 point = PassGrid::next(now());
            PassGrid::wait();
            inTime = inTime && now() >= point;
        }
        ended = true;
        sender.join();
        QVERIFY(inTime);
    }
};

static const RegisteredTest<TestPassGrid> registered;

#include "testpassgrid.moc"
