#include "faultpage.h"
#include "mxsite.h"
#include "product.h"
#include "rawsocket.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <csignal>
#include <poll.h>

using sim::Wire;

namespace
{
constexpr int Ports = 8;
constexpr int ReplyMs = 2500; // a listener that has no descriptor tries again after a second
constexpr char SceneZero[] = "/home/app/data/scene0";

struct Named {
    const char *name;
    int bits;
};
#define CALL_ROW(name, ways, when) {#name, ways},
constexpr Named Calls[] = {CALLS(CALL_ROW)};
constexpr Named Ways[] = {
    {"EIO", Io},       {"ENOSPC", NoSpace}, {"EINTR", Interrupted}, {"EMFILE", NoDescriptor},
    {"EAGAIN", Again}, {"short", Short}};

/// The page, in a file of its own.
class Page
{
public:
    explicit Page(const QString &path)
        : m_file(path)
    {
        m_file.open(QIODevice::ReadWrite);
        m_file.resize(sizeof(FaultPage));
        m_page = reinterpret_cast<FaultPage *>(m_file.map(0, sizeof(FaultPage)));
    }
    FaultPage *operator->() const { return m_page; }
    /// Counts from now on; the call fails at its `n`th time.
    void arm(int call = 0, int n = 0, int how = 0)
    {
        *m_page = FaultPage{0, call, n, how, 0, {}};
        __atomic_store_n(&m_page->armed, 1, __ATOMIC_SEQ_CST);
    }
    void disarm() { __atomic_store_n(&m_page->armed, 0, __ATOMIC_SEQ_CST); }

private:
    QFile m_file;
    FaultPage *m_page;
};

/// The unit with the program on it, and what is known of both.
class Bench : public TestUnit
{
public:
    explicit Bench(const Settings &settings)
        : TestUnit(Ports, settings)
        , page(path("/faults"))
    {
        qputenv("LD_PRELOAD", FAULTS);
        qputenv("MX_FAULTS", path("/faults").toUtf8());
        // What the machine has to write elsewhere is no matter of the unit's.
        makeFolder("/bin");
        QFile::link(QStringLiteral("/bin/true"), path("/bin/sync"));
        qputenv("PATH", path("/bin").toUtf8() + ":/usr/bin:/bin");
        makeFolder("/home/www/splice");
    }
    ~Bench()
    {
        m_observer.reset();
        if (captions) {
            captions->closeWriteChannel();
            captions->waitForFinished();
        }
    }

    void launch(bool await = true)
    {
        product.reset(new Product(await));
        qunsetenv("LD_PRELOAD");
        if (await) {
            observe();
            hardware().waitFor([&] { return hardware().lcd().frameCount() > 0 && boardShows(routing); },
                               ReplyMs);
        }
    }
    void observe()
    {
        m_observer.reset(new QMxComm(false));
        pid = product->processId();
    }
    void launchCaptions()
    {
        start(false);
        captions.reset(new QProcess);
        captions->start(QCoreApplication::applicationFilePath(), {QStringLiteral("captions")});
        captions->waitForStarted();
        qunsetenv("LD_PRELOAD");
        pid = captions->processId();
    }

    /// Descriptors and threads of the program.
    QByteArray holds() const
    {
        const QString process = QStringLiteral("/proc/%1/").arg(pid);
        const auto count = [&](const char *of) {
            return QByteArray::number(
                QDir(process + QLatin1String(of)).entryList(QDir::AllEntries | QDir::System).size());
        };
        return count("fd") + " descriptors, " + count("task") + " threads";
    }

    bool replies(Wire wire)
    {
        QByteArray all;
        return hardware().waitFor(
            [&] {
                all += QByteArray::fromStdString(hardware().takeReceived(wire));
                return all.contains("OK.");
            },
            ReplyMs);
    }

    /// What the file holds must be what it should, or after a fault what it held before.
    QByteArray compare(const char *file, const QByteArray &wanted, bool faulty)
    {
        QByteArray content = fileContent(file);
        if (wanted.contains('=')) { // an INI file, in any order
            QByteArrayList lines = content.trimmed().split('\n').mid(1);
            std::sort(lines.begin(), lines.end());
            content = lines.join('\n');
        }
        QByteArray &before = m_files[file];
        const bool right = content == wanted || (faulty && content == before);
        before = content;
        return right ? QByteArray()
                     : QByteArray(file) + " holds \"" + content.toPercentEncoding(" =") + "\". ";
    }

    /// Faults that the far ends have seen since the last call.
    QByteArray newFaults()
    {
        const QByteArray all = faults();
        QByteArray later = all.mid(m_faults);
        m_faults = all.size();
        return later;
    }

    Page page;
    std::unique_ptr<Product> product;
    std::unique_ptr<QProcess> captions; ///< what saves them, in place of the product
    qint64 pid = 0;
    int round = 0;
    int lostReplies = 0;
    std::vector<int> routing = std::vector<int>(Ports, 1);

private:
    std::unique_ptr<QMxComm> m_observer;
    std::map<QByteArray, QByteArray> m_files;
    int m_faults = 0;
};

/// One round of each scenario. \return what went wrong; after a fault a reply may be missing, and a file be
/// as it was
using Round = QByteArray (*)(Bench &, bool faulty);

QByteArray missing(Bench &bench, bool faulty, const char *reply)
{
    bench.lostReplies += faulty;
    return faulty ? QByteArray() : QByteArray("no reply ") + reply + ". ";
}

QByteArray routes(Bench &bench, bool faulty)
{
    sim::VirtualUnit &unit = bench.hardware();
    ++bench.round;
    for (int i = 0; i < 5; ++i) {
        bench.routing[size_t(i)] = (bench.round + i) % Ports + 1;
    }
    const auto route = [&](int output) {
        return QByteArray::number(bench.routing[size_t(output - 1)]) + 'x' + QByteArray::number(output) + '.';
    };
    const auto frame = static_cast<unsigned char>(bench.round);
    unit.takeReceived(Wire::Control0);
    unit.takeReceived(Wire::Control1);
    const std::unique_ptr<RawSocket> tcp(RawSocket::tcp(MxSite::tcpPort()));
    const std::unique_ptr<RawSocket> udp(RawSocket::udp());
    unit.send(Wire::Control0, route(1).toStdString());
    unit.send(Wire::Control1, route(2).toStdString());
    tcp->send(route(3));
    udp->sendTo(MxSite::udpPort(), route(4));
    bench.shm().map[4] = static_cast<quint16>(bench.routing[4] - 1);
    sendRequest(QByteArray("\6\0\0\0\xEB\x90\0\6", 8) + char(frame) + '\0');
    QByteArray wrong;
    for (const Wire wire : {Wire::Control0, Wire::Control1}) {
        wrong += bench.replies(wire) ? "" : missing(bench, faulty, "on a serial port");
    }
    for (const RawSocket *client : {tcp.get(), udp.get()}) {
        pollfd reply{client->descriptor(), POLLIN, 0};
        const bool answered = ::poll(&reply, 1, ReplyMs) == 1 && client->receive() == "OK.";
        wrong += answered ? "" : missing(bench, faulty, client == tcp.get() ? "over TCP" : "over UDP");
    }
    // One that has been closed comes again.
    const std::unique_ptr<RawSocket> again(RawSocket::tcp(MxSite::tcpPort()));
    again->send(route(3));
    again->receive();
    wrong += bench.boardShows(bench.routing) ? "" : "not routed. ";
    const bool passed = unit.waitFor(
        [&] {
            const auto frames = unit.board().passedFrames();
            return !frames.empty() && frames.back().bytes[4] == frame;
        },
        ReplyMs);
    return wrong + (passed || faulty ? "" : "request not passed on. ");
}

QByteArray command(Bench &bench, const char *text, bool faulty)
{
    bench.hardware().takeReceived(Wire::Control0);
    bench.hardware().send(Wire::Control0, text);
    return bench.replies(Wire::Control0) ? QByteArray() : missing(bench, faulty, text);
}

QByteArray words(int word)
{
    return QByteArray(1, char(0x80 | word)).append("\x11\x12\x13", 3).repeated(Ports);
}

QByteArray layout(const Bench &bench)
{
    return QByteArray::number(bench.round).repeated(700);
}

QByteArray saveScene(Bench &bench, bool faulty)
{
    ++bench.round;
    bench.writeFile("/home/www/splice/splice.txt", layout(bench));
    const QByteArray splice = words(bench.round % 64);
    QByteArray map;
    for (int o = 0; o < Ports; ++o) {
        bench.shm().map[o] = static_cast<quint16>((bench.round + o) % Ports);
        map += char((bench.round + o) % Ports);
        map += '\0';
        bench.shm().spliceData[o] = reinterpret_cast<const quint32 *>(splice.constData())[o];
    }
    const QByteArray wrong = command(bench, "save3.", faulty);
    return wrong + bench.compare("/home/app/data/scene3", map, faulty) +
           bench.compare("/home/app/data/splice3.ini", splice, faulty) +
           bench.compare("/home/www/splice/splice3.txt", layout(bench), faulty);
}

QByteArray recallScene(Bench &bench, bool faulty)
{
    const int word = ++bench.round % 64;
    bench.writeFile("/home/app/data/splice3.ini", words(word));
    bench.writeFile("/home/www/splice/splice3.txt", layout(bench));
    const QByteArray wrong = command(bench, "recall3.", faulty);
    const bool sent = bench.hardware().waitFor(
        [&] {
            const auto frames = bench.hardware().board().spliceFrames();
            return !frames.empty() && frames.back().words[0] == (0x13121180U | unsigned(word));
        },
        ReplyMs);
    return wrong + (sent || faulty ? "" : "splice not sent. ") +
           bench.compare("/home/www/splice/splice.txt", layout(bench), faulty);
}

QByteArray saveSettings(Bench &bench, bool faulty)
{
    const bool beep = ++bench.round % 2 != 0;
    const QByteArray number = QByteArray::number(bench.round % 200);
    bench.shm().eth0Address.set("10.0.0." + number);
    bench.shm().eth1Gateway.set("10.0.1." + number);
    const QByteArray wrong = command(bench, beep ? "beepon." : "beepoff.", faulty);
    return wrong +
           bench.compare("/home/app/config/setup.ini",
                         QByteArray("backlight=0\nbeep=") + (beep ? "1" : "0") +
                             "\nkeypad=1\nport=8\nscene=10\nsleep=4",
                         faulty) +
           bench.compare("/etc/eth0.conf",
                         "ADDRESS=10.0.0." + number + "\nGATEWAY=192.168.0.1\nNETMASK=255.255.255.0",
                         faulty) +
           bench.compare("/etc/eth1.conf",
                         "ADDRESS=192.168.1.80\nGATEWAY=10.0.1." + number + "\nNETMASK=255.255.255.0",
                         faulty);
}

QByteArray saveCaptions(Bench &bench, bool faulty)
{
    QByteArrayList lines;
    const QByteArray number = QByteArray::number(++bench.round);
    for (int i = 1; i <= 10; ++i) {
        lines << "scene" + QByteArray::number(i) + '=' + QByteArray::number(i);
    }
    for (int i = 1; i <= Ports; ++i) {
        bench.shm().inputCaption[i - 1].set("in " + number);
        lines << "input" + QByteArray::number(i) + "=in " + number
              << "output" + QByteArray::number(i) + '=' + QByteArray::number(i);
    }
    std::sort(lines.begin(), lines.end());
    bench.captions->write("\n");
    QByteArray said;
    while (said.count("saved") < 1 && bench.captions->waitForReadyRead(20 * ReplyMs)) {
        said += bench.captions->readAll();
    }
    return (said.isEmpty() ? "not saved. " : "") +
           bench.compare("/home/app/config/caption.ini", lines.join('\n'), faulty);
}

/// A route by two keys; the LCD shows it, by itself.
QByteArray pressKeys(Bench &bench, bool)
{
    sim::VirtualUnit &unit = bench.hardware();
    const int odd = ++bench.round % 2;
    bench.routing[0] = 1 + odd;
    for (const int key : {1 + odd, 51}) {
        unit.pressKey(key);
        unit.releaseKey(key);
    }
    const bool routed = bench.boardShows(bench.routing);
    const auto picture = [&] {
        QByteArray dots;
        const sim::LcdModule lcd = unit.lcd();
        for (int i = 0; i < 128 * 64; ++i) {
            dots += lcd.isLit(i % 128, i / 128) ? '#' : ' ';
        }
        return dots;
    };
    static QByteArray pictures[2]; // of rounds without a fault, which come first
    QByteArray &known = pictures[odd];
    if (known.isEmpty()) {
        QTest::qWait(300); // nothing tells when it is as it will stay
        known = picture();
    }
    const bool shown =
        unit.waitFor([&] { return picture() == known && unit.keys().isLit(1 + odd); }, ReplyMs);
    return QByteArray(routed ? "" : "not routed. ") + (shown ? "" : "not shown. ");
}
} // namespace

Q_DECLARE_METATYPE(Round)

/// The program on a unit of which one call of the system fails, and then none any more.
class TestFaults : public QObject
{
    Q_OBJECT

private slots:
    void everyCallFailsOnce_data()
    {
        columns<Round, int>("round", "stride"); // of the faults that the short form tries
        row("settings", Round(saveSettings), 41);
        row("captions", Round(saveCaptions), 17);
        row("scene saved", Round(saveScene), 17);
        row("scene recalled", Round(recallScene), 499);
        row("routes", Round(routes), 29);
        row("front panel", Round(pressKeys), 199);
    }
    void everyCallFailsOnce()
    {
        QFETCH(Round, round);
        QFETCH(int, stride);
        if (qEnvironmentVariableIsSet("MX_LONG")) {
            stride = qMax(1, qEnvironmentVariableIntValue("MX_LONG"));
        }
        m_round = round;
        QVERIFY(begin());
        m_bench->page.arm();
        QCOMPARE(round(*m_bench, false) + m_bench->newFaults(), QByteArray());
        m_bench->page.disarm();
        const FaultPage counted = *m_bench->page.operator->();
        Tally tally{};
        int next = 0;
        for (int call = 0; call < CallCount; ++call) {
            tally.calls += counted.count[call];
            for (int n = 1; n <= counted.count[call]; ++n) {
                for (const Named &way : Ways) {
                    if ((Calls[call].bits & way.bits) != 0 && next++ % stride == 0) {
                        inject(tally, call, n, way);
                    }
                }
            }
        }
        std::printf("%-16s %5d calls %5d faults %4d replies lost %4d frames cut %4d broken\n",
                    QTest::currentDataTag(), tally.calls, tally.faults, tally.lost, tally.cut, tally.broken);
        m_bench.reset();
        QCOMPARE(tally.broken, 0);
    }

    /// A start that fails says so; one that succeeds has the stored routing and settings, and all wires,
    /// apart from one that could not be opened.
    void everyCallOfTheStartFailsOnce()
    {
        const bool isLong = qEnvironmentVariableIsSet("MX_LONG");
        const int stride = isLong ? qMax(1, qEnvironmentVariableIntValue("MX_LONG")) : 199;
        QCOMPARE(startWith(0, 0, 0), QByteArray());
        const FaultPage counted = *m_bench->page.operator->();
        int calls = 0, faults = 0, broken = 0, next = 0;
        for (int call = 0; call < CallCount; ++call) {
            calls += counted.count[call];
            for (int n = 1; n <= counted.count[call]; ++n) {
                for (const Named &way : Ways) {
                    if ((Calls[call].bits & way.bits) == 0 || next++ % stride != 0) {
                        continue;
                    }
                    const QByteArray wrong = startWith(call, n, way.bits);
                    faults += m_bench->page->failed;
                    if (!wrong.isEmpty()) {
                        ++broken;
                        qWarning("%s %s at %d: %s", Calls[call].name, way.name, n, wrong.constData());
                    }
                }
            }
        }
        std::printf("%-16s %5d calls %5d faults %4d starts given up %4d without a wire %4d broken\n", "start",
                    calls, faults, m_givenUp, m_wireless, broken);
        m_bench.reset();
        QCOMPARE(broken, 0);
    }

private:
    QByteArray startWith(int call, int n, int how)
    {
        m_bench.reset();
        m_bench.reset(new Bench(TestUnit::Settings{{"system/keypad", "1"}}));
        Bench &bench = *m_bench;
        bench.routing = std::vector<int>(Ports, 2);
        const QByteArray stored = QByteArray("\1\0", 2).repeated(Ports);
        bench.writeFile(SceneZero, stored);
        const QByteArray settings = bench.fileContent("/home/app/config/setup.ini");
        bench.page.arm(call, n, how);
        bench.launch(false);
        const bool isUp = bench.product->await("t0 ");
        const bool shown = isUp && bench.hardware().waitFor(
                                       [&] {
                                           return bench.hardware().board().switchFrames().size() == 1 &&
                                                  bench.hardware().lcd().frameCount() > 0;
                                       },
                                       how != 0 && bench.page->failed ? 1500 : 5000);
        bench.page.disarm();
        QByteArray wrong = bench.fileContent(SceneZero) == stored ? "" : "the stored routing is lost. ";
        wrong += bench.fileContent("/home/app/config/setup.ini") == settings ? "" : "the settings are lost. ";
        if (!isUp) {
            ++m_givenUp;
            return wrong + (bench.product->finish() != 0 && !bench.product->errors().isEmpty()
                                ? ""
                                : "did not start. ");
        }
        bench.observe();
        const bool right =
            shown && bench.hardware().board().switchFrames().front().inputs == std::vector<quint16>(Ports, 1);
        const bool listens = !(bench.product->output().contains("can't listen"));
        if (!right || !listens || !routes(bench, false).isEmpty()) {
            ++m_wireless;
            const QByteArray dead = !listens ? "" : right ? "a wire is dead. " : "the board is not up. ";
            constexpr int Known[] = {Call_open64, Call_ioctl,  Call_socket,
                                     Call_bind,   Call_msgget, Call_pthread_create};
            wrong += std::count(std::begin(Known), std::end(Known), call) > 0 ? "" : dead;
        }
        // Without the descriptor that signals come by, SIGTERM ends it at once.
        const bool ended =
            bench.product->end(SIGTERM) == 0 || (call == Call_signalfd && !bench.product->isRunning());
        return wrong + (ended ? "" : "did not end. ");
    }

    int m_givenUp = 0;
    int m_wireless = 0;

    struct Tally {
        int calls, faults, lost, cut, broken;
    };

    /// The program runs, and has done its work once.
    bool begin()
    {
        const bool panel = m_round != Round(saveCaptions);
        m_bench.reset();
        m_bench.reset(new Bench(panel ? TestUnit::Settings{{"system/keypad", "1"}} : TestUnit::Settings{}));
        m_round == Round(saveCaptions) ? m_bench->launchCaptions() : m_bench->launch();
        m_held = m_bench->holds();
        const QByteArray wrong = m_round(*m_bench, false) + m_bench->newFaults();
        if (m_bench->captions) {
            m_held = m_bench->holds();
        }
        if (!wrong.isEmpty()) {
            qWarning("without a fault: %s", wrong.constData());
        }
        return wrong.isEmpty();
    }

    void inject(Tally &tally, int call, int n, const Named &way)
    {
        Bench &bench = *m_bench;
        bench.page.arm(call, n, way.bits);
        QByteArray wrong = m_round(bench, true);
        bench.page.disarm();
        const bool failed = bench.page->failed;
        const QByteArray faults = bench.newFaults();
        if (call == Call_write && faults.startsWith("board")) {
            ++tally.cut;
        } else {
            wrong += faults;
        }
        if (::kill(pid_t(bench.pid), 0) == 0 && wrong.isEmpty()) {
            wrong += m_round(bench, false) + bench.newFaults();
        }
        if (wrong.isEmpty() && !runUntil([&] { return bench.holds() == m_held; })) {
            wrong += "held " + m_held + ", holds " + bench.holds();
        }
        tally.faults += failed;
        tally.lost += std::exchange(bench.lostReplies, 0);
        if (!wrong.isEmpty()) {
            ++tally.broken;
            qWarning("%s %s at %d: %s", Calls[call].name, way.name, n, wrong.constData());
            begin();
        }
    }

    Round m_round = nullptr;
    QByteArray m_held; ///< by the program at rest
    std::unique_ptr<Bench> m_bench;
};

static const RegisteredTest<TestFaults> registered;
#include "testfaults.moc"
