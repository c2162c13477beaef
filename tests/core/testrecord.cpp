#include "mxsite.h"
#include "sharedobjects.h"
#include "testregistry.h"
#include "testunit.h"

#include <QElapsedTimer>
#include <QTest>
#include <algorithm>
#include <atomic>
#include <cstring>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <thread>
#include <unistd.h>
#include <vector>

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

    void attachingClearsAndRemovesNothing()
    {
        TestUnit unit(4);
        unit.start(false);
        unit.run("3x2");
        MxShm *const ours = std::exchange(g_mxConfig, nullptr);
        QScopedPointer<QMxComm> attached(new QMxComm(false));
        QVERIFY(g_mxConfig != nullptr && g_mxConfig != ours);
        QCOMPARE(int(g_mxConfig->map[1]), 2);
        attached.reset();
        g_mxConfig = ours;
        QVERIFY(shmget(MxSite::segmentKey(), 0, 0) >= 0);
        QVERIFY(msgget(MxSite::requestQueueKey(), 0) >= 0);
        QCOMPARE(int(unit.shm().map[1]), 2);
        unit.stop();
        QCOMPARE(shmget(MxSite::segmentKey(), 0, 0), -1);
        QCOMPARE(msgget(MxSite::requestQueueKey(), 0), -1);
        QCOMPARE(msgget(MxSite::replyQueueKey(), 0), -1);
        QVERIFY(g_mxConfig == nullptr);
    }

    void aShortSegmentIsNotTheRecord()
    {
        const TestUnit unit;
        const int segment = shmget(MxSite::segmentKey(), sizeof(MxShm) - 1, IPC_CREAT | 0600);
        SharedObjects objects;
        QVERIFY(objects.open() == nullptr && objects.create() == nullptr);
        shmid_ds facts{};
        QVERIFY(shmctl(segment, IPC_STAT, &facts) == 0 && facts.shm_nattch == 0);
    }

    void aSegmentLeftBehindIsReusedAndCleared()
    {
        TestUnit unit(4);
        SharedObjects earlier;
        std::memset(static_cast<void *>(earlier.create()), 0xFF, SharedObjects::SegmentSize);
        const int left = shmget(MxSite::segmentKey(), 0, 0);
        unit.start(false);
        QCOMPARE(shmget(MxSite::segmentKey(), 0, 0), left);
        const auto *bytes = reinterpret_cast<const char *>(&unit.shm());
        const QByteArray all(bytes, SharedObjects::SegmentSize);
        QCOMPARE(all.mid(1056, 1449 - 1056).count('\0'), 1449 - 1056);
        QCOMPARE(all.mid(69545, 200618 - 69545).count('\0'), 200618 - 69545);
        QCOMPARE(all.mid(204714).count('\0'), all.size() - 204714);
        earlier.close();
    }

    void ofANewSegmentOnlyTheRecordIsTouched()
    {
        TestUnit unit(4);
        unit.start(false);
        std::vector<unsigned char> pages(SharedObjects::SegmentSize / size_t(::getpagesize()));
        QCOMPARE(::mincore(&unit.shm(), SharedObjects::SegmentSize, pages.data()), 0);
        const auto inMemory = std::count(pages.begin(), pages.end(), 1) * ::getpagesize();
        QVERIFY2(inMemory > 0 && inMemory < int(sizeof(MxShm)) + 8192, QByteArray::number(int(inMemory)));
    }

    /// Each time a few in a row, of which the last meets the taker at any of its steps.
    void aSpliceHandedOverIsNeverLost()
    {
        const auto shm = std::make_unique<MxShm>();
        std::atomic<bool> ended{false};
        std::atomic<quint32> taken{0};
        std::thread taker([&] {
            while (!ended) {
                if (shm->splicePending.take()) {
                    taken = shm->spliceData[0];
                }
            }
        });
        quint32 handedOver = 0;
        QElapsedTimer elapsed;
        elapsed.start();
        for (int round = 0; taken == handedOver && !elapsed.hasExpired(100); ++round) {
            for (int i = 0; i <= round % 64; ++i) {
                shm->spliceData[0] = ++handedOver;
                shm->splicePending.raise();
            }
            while (taken != handedOver && !elapsed.hasExpired(10000)) {
            }
        }
        ended = true;
        taker.join();
        QCOMPARE(quint32(taken), handedOver);
    }
};

static const RegisteredTest<TestRecord> registered;
#include "testrecord.moc"
