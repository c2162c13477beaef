#include "ask.h"
#include "filedescriptor.h"
#include "product.h"
#include "rows.h"
#include "stuckthread.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace
{
/// The service manager's end: where the program tells how it is, with a watchdog of one second.
class Manager
{
public:
    explicit Manager(const QString &path)
        : m_socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, qPrintable(path), sizeof address.sun_path);
        if (::bind(m_socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
            qFatal("no socket for the service manager");
        }
        qputenv("NOTIFY_SOCKET", path.toLocal8Bit());
        qputenv("WATCHDOG_USEC", "1000000");
    }
    ~Manager()
    {
        qunsetenv("NOTIFY_SOCKET");
        qunsetenv("WATCHDOG_USEC");
    }

    /// The next message; empty when none comes in so many milliseconds.
    QByteArray next(int ms)
    {
        pollfd socket{m_socket.get(), POLLIN, 0};
        char text[256];
        const ssize_t length = ::poll(&socket, 1, ms) == 1 ? ::recv(m_socket.get(), text, sizeof text, 0) : 0;
        return {text, static_cast<int>(std::max<ssize_t>(length, 0))};
    }

private:
    FileDescriptor m_socket;
};

const QByteArray Feed = "WATCHDOG=1";
constexpr int DeadlineMs = 10000;
} // namespace

/// What the program tells the manager that it is a service of.
class TestService : public QObject
{
    Q_OBJECT

private slots:
    void itIsReadyWhenItListens()
    {
        const TestUnit unit(4);
        Manager manager(unit.path("/manager"));
        Product product(false);
        const QByteArray said = manager.next(DeadlineMs);
        QVERIFY2(said.startsWith("READY=1\nSTATUS=4 x 4, TCP port "), said);
        QCOMPARE(askTcp("3x2"), QByteArray("OK."));
        QCOMPARE(manager.next(DeadlineMs), Feed);
    }

    /// The main thread is the one that feeds it.
    void aThreadThatIsStuckStarvesTheWatchdog_data()
    {
        columns<QByteArray, bool, bool>("thread", "hasPanel", "showsStart");
        row("control", "control", false, false);
        row("LCD", "thread_lcd", true, false);
        row("keys, in the start picture", "thread_keypad", true, true);
        row("keys", "thread_keypad", true, false);
    }
    void aThreadThatIsStuckStarvesTheWatchdog()
    {
        QFETCH(QByteArray, thread);
        QFETCH(bool, hasPanel);
        QFETCH(bool, showsStart);
        TestUnit unit(4, {{"system/keypad", hasPanel ? "1" : "0"}});
        Manager manager(unit.path("/manager"));
        Product product;
        const sim::VirtualUnit &hardware = unit.hardware();
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QVERIFY(runUntil([&] {
            return !hasPanel || (showsStart ? hardware.lcd().frameCount() : hardware.keys().byteCount()) > 0;
        }));
        auto stuck = std::make_unique<StuckThread>(product.processId(), thread);
        QVERIFY(stuck->isStuck());
        // A sign from before may be left over, for one feed.
        QTest::qWait(200);
        while (!manager.next(0).isEmpty()) {
        }
        QCOMPARE(manager.next(1500), QByteArray());
        stuck.reset();
        QCOMPARE(manager.next(DeadlineMs), Feed);
        QCOMPARE(product.end(SIGTERM), 0);
    }
};

static const RegisteredTest<TestService> registered;
#include "testservice.moc"
