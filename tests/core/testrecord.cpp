#include "mxsite.h"
#include "sharedobjects.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <cstring>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
/// Runs `look` on the bytes of the segment in another process. \return what it returned
template <typename Look>
int inAnotherProcess(Look look)
{
    const key_t key = MxSite::segmentKey();
    const pid_t child = fork();
    if (child == 0) {
        auto *bytes = static_cast<unsigned char *>(shmat(shmget(key, 0, 0), nullptr, 0));
        _exit(look(bytes));
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
} // namespace

/// The record and its segment, as other processes on the board see them.
class TestRecord : public QObject
{
    Q_OBJECT

private slots:
    void keysAreTheDevicesOwnWithoutARoot()
    {
        const TestUnit unit;
        const key_t derived = MxSite::segmentKey();
        QVERIFY(derived != 1 && derived != MxSite::requestQueueKey());
        const QByteArray root = qgetenv("MX_ROOT");
        qputenv("MX_ROOT", root + "/etc/..");
        QCOMPARE(MxSite::segmentKey(), derived);
        qunsetenv("MX_ROOT");
        QCOMPARE(MxSite::segmentKey(), 1);
        QCOMPARE(MxSite::requestQueueKey(), 1);
        QCOMPARE(MxSite::replyQueueKey(), 2);
        QCOMPARE(MxSite::path("/etc/eth0.conf"), QByteArray("/etc/eth0.conf"));
    }

    void anotherProcessFindsEveryFieldByItsOffset()
    {
        TestUnit unit(160, {{"system/scene", "40"}, {"system/baudrate", "9600"}, {"system/images", "dark"}});
        unit.start(false);
        QCOMPARE(unit.run("161x160"), 0);
        unit.shm().outputCaption[1023].set("last");
        unit.shm().sceneMap[63][1023] = 0xABCD;
        unit.shm().spliceData[1023] = 0x12345678;
        unit.shm().splicePending.raise();
        const int wrong = inAnotherProcess([](unsigned char *b) {
            const auto text = [b](int at, const char *expected) {
                return std::strcmp(reinterpret_cast<const char *>(b) + at, expected) == 0;
            };
            b[69545 + 2 * 3] = 7; // as another process routes
            const bool right = b[0] == 160 && b[4] == 40 && b[24] == 0x80 && b[25] == 0x25 &&
                               text(32, "dark") && text(544, "en") && text(1449, "192.168.0.80") &&
                               text(1609, "192.168.1.1") && text(1961 + 32 * 4, "5") &&
                               text(34729 + 32 * 1023, "last") && text(67497 + 32 * 39, "40") &&
                               b[69545 + 2 * 159] == 160 && b[69545 + 2048 * 63 + 2046] == 0xCD &&
                               b[69545 + 2048 * 63 + 2047] == 0xAB && b[200617] == 1 &&
                               b[200618 + 4 * 1023] == 0x78 && b[200618 + 4 * 1023 + 3] == 0x12;
            return right ? 0 : 1;
        });
        QCOMPARE(int(unit.shm().map[3]), 7);
        QCOMPARE(wrong, 0);
    }

    void attachingClearsAndRemovesNothing()
    {
        TestUnit unit(4);
        unit.start(false);
        unit.run("3x2");
        {
            MxShm *const ours = g_mxConfig;
            const QMxComm attached(false);
            QVERIFY(g_mxConfig != nullptr && g_mxConfig != ours);
            QCOMPARE(int(g_mxConfig->map[1]), 2);
            g_mxConfig = ours;
        }
        QVERIFY(shmget(MxSite::segmentKey(), 0, 0) >= 0);
        QVERIFY(msgget(MxSite::requestQueueKey(), 0) >= 0);
        QCOMPARE(int(unit.shm().map[1]), 2);
        unit.stop();
        QCOMPARE(shmget(MxSite::segmentKey(), 0, 0), -1);
        QCOMPARE(msgget(MxSite::requestQueueKey(), 0), -1);
        QCOMPARE(msgget(MxSite::replyQueueKey(), 0), -1);
    }

    void aSegmentLeftBehindIsReusedAndCleared()
    {
        TestUnit unit(4);
        SharedObjects earlier;
        std::memset(static_cast<void *>(earlier.create()), 0xFF, SharedObjects::SegmentSize);
        const int left = shmget(MxSite::segmentKey(), 0, 0);
        unit.start(false);
        QCOMPARE(shmget(MxSite::segmentKey(), 0, 0), left);
        const auto *bytes = reinterpret_cast<const unsigned char *>(&unit.shm());
        const auto isZero = [bytes](int from, int to) {
            return std::all_of(bytes + from, bytes + to, [](unsigned char b) { return b == 0; });
        };
        QVERIFY(isZero(1056, 1449));
        QVERIFY(isZero(69545, 200618));
        QVERIFY(isZero(204714, SharedObjects::SegmentSize));
        earlier.close();
    }
};

static const RegisteredTest<TestRecord> registered;
#include "testrecord.moc"
