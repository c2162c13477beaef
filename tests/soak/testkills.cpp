#include "filedescriptor.h"
#include "mxsite.h"
#include "product.h"
#include "testregistry.h"
#include "testunit.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTest>
#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <sys/msg.h>
#include <sys/shm.h>
#include <termios.h>

namespace
{
constexpr int Ports = 8;

/// Identifiers of the shared objects; -1 for one that is missing.
std::array<int, 3> sharedObjects()
{
    return {shmget(MxSite::segmentKey(), 0, 0), msgget(MxSite::requestQueueKey(), 0),
            msgget(MxSite::replyQueueKey(), 0)};
}
} // namespace

/// The program, killed at random moments under load and started again: ten times, or as often as MX_LONG
/// says; MX_SEED chooses the moments.
class TestKills : public QObject
{
    Q_OBJECT

private slots:
    void theRoutingIsBackAfterEachKill()
    {
        const int rounds = qMax(10, qEnvironmentVariableIntValue("MX_LONG"));
        m_random.seed(unsigned(qEnvironmentVariableIntValue("MX_SEED")));
        TestUnit unit(Ports, {{"system/keypad", "1"}});
        unit.makeFolder("/home/app/data");
        for (const char *scene : {"/home/app/data/scene0", "/home/app/data/scene4"}) {
            unit.writeFile(scene, QByteArray(2 * Ports, '\0'));
        }
        std::array<int, 3> objects{};
        int inTheMiddle = 0;
        for (int round = 0; round < rounds; ++round) {
            const QByteArray stored = unit.fileContent("/home/app/data/scene0");
            const qint64 last = lastFrame(unit, 0).timeUs;
            Product product(false);
            runUnderLoad(unit, stored, last);
            QVERIFY2(product.processId() > 0, product.output() + product.errors());
            const auto killed =
                std::chrono::steady_clock::now().time_since_epoch() / std::chrono::microseconds(1);
            QCOMPARE(product.end(SIGKILL), -1);
            QTest::qWait(120); // after which a frame that was cut off is over for the board
            dropUnread(unit);
            if (round == 0) {
                objects = sharedObjects();
            }
            QVERIFY(objects[0] >= 0 && objects[1] >= 0 && sharedObjects() == objects);
            const auto isStored = [&](size_t before) {
                const QByteArray file = unit.fileContent("/home/app/data/scene0");
                return routingOf(unit, before).startsWith(file.left(2 * Ports - 2)) &&
                       file.size() == 2 * Ports;
            };
            // It sends a routing and stores it with what has come over TCP meanwhile, for the last output.
            QVERIFY(runUntil(
                [&] { return isStored(0) || (isStored(1) && lastFrame(unit, 0).timeUs > killed - 50000); }));
            inTheMiddle += isStored(0) ? 0 : 1;
            QCOMPARE(unit.fileContent("/home/app/data/scene4").size(), 2 * Ports);
            QVERIFY(unit.fileContent("/home/app/config/setup.ini").contains("port=8\n"));
        }
        qInfo("%d kills, %d while a frame was sent and not stored yet", rounds, inTheMiddle);
    }

private:
    /// The last frame, or one before it; before the first, the routing that the unit begins with.
    static sim::SwitchFrame lastFrame(const TestUnit &unit, size_t before)
    {
        const auto frames = const_cast<TestUnit &>(unit).hardware().board().switchFrames();
        return frames.size() > before ? frames[frames.size() - 1 - before]
                                      : sim::SwitchFrame{0, std::vector<quint16>(Ports, 0)};
    }

    /// As it is stored.
    static QByteArray routingOf(const TestUnit &unit, size_t before)
    {
        const auto inputs = lastFrame(unit, before).inputs;
        return QByteArray(reinterpret_cast<const char *>(inputs.data()), int(2 * inputs.size()));
    }

    /// What a port that nobody has open has received, as hardware does; the next program would carry it out.
    static void dropUnread(const TestUnit &unit)
    {
        const FileDescriptor port(
            ::open(qPrintable(unit.path("/dev/ttymxc3")), O_RDWR | O_NOCTTY | O_CLOEXEC));
        ::tcflush(port.get(), TCIFLUSH);
    }

    int any(int last) { return std::uniform_int_distribution<>(0, last)(m_random); }
    QByteArray route(int output)
    {
        return QByteArray::number(any(Ports)) + "x" + QByteArray::number(output) + ".";
    }

    /// For up to 1.5 s; the load begins when the stored routing is on the board again.
    void runUnderLoad(TestUnit &unit, const QByteArray &stored, qint64 last)
    {
        QElapsedTimer elapsed;
        elapsed.start();
        QTcpSocket client;
        bool isBack = false;
        const int life = any(1500);
        while (!elapsed.hasExpired(life)) {
            if (!isBack && lastFrame(unit, 0).timeUs > last) {
                isBack = true;
                QCOMPARE(routingOf(unit, 0), stored);
            }
            if (isBack) {
                unit.hardware().send(
                    sim::Wire::Control0,
                    (any(9) == 0 ? QByteArray("save4.") : route(1 + any(Ports - 2))).toStdString());
                if (client.state() == QAbstractSocket::ConnectedState) {
                    client.write(any(9) == 0 ? QByteArray("beepon.beepoff.") : route(Ports));
                } else if (client.state() == QAbstractSocket::UnconnectedState) {
                    client.connectToHost(QHostAddress(QHostAddress::LocalHost), MxSite::tcpPort());
                }
            }
            QTest::qWait(5);
        }
        unit.hardware().takeReceived(sim::Wire::Control0);
    }

    std::mt19937 m_random;
};

static const RegisteredTest<TestKills> registered;
#include "testkills.moc"
