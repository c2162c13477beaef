#include "passgrid.h"
#include "testregistry.h"

#include <QTest>
#include <atomic>
#include <chrono>
#include <csignal>
#include <pthread.h>
#include <thread>

namespace
{
qint64 now()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}
} // namespace

/// When the loops of 10 ms pass.
class TestPassGrid : public QObject
{
    Q_OBJECT

private slots:
    void nextPoint()
    {
        constexpr qint64 ms = 1000 * 1000;
        constexpr qint64 year = 31557600000 * ms;
        for (const auto &[now, next] : {std::pair(qint64(0), 10 * ms),
                                        {20 * ms - 1, 20 * ms},
                                        {20 * ms, 30 * ms},
                                        {20 * ms + 1, 30 * ms},
                                        {1023 * ms, 1030 * ms},
                                        {year + 1, year + 10 * ms}}) {
            QCOMPARE(PassGrid::next(now), next);
        }
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
