#include "hands.h"
#include "mxsite.h"
#include "product.h"
#include "testregistry.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>

namespace
{
constexpr double CommandsPerSecond = 1389; // two units: 10^7 in an hour
constexpr quint64 FirstCommands = 100000;

/// What the product costs, seen from outside.
struct Cost {
    int values[4]; ///< in the order of `CostNames`

    explicit Cost(qint64 process)
    {
        const QString folder = QStringLiteral("/proc/%1/").arg(process);
        values[0] = field(folder + "status", "VmRSS:");
        values[1] = field(folder + "smaps_rollup", "Private_Dirty:");
        values[2] = QDir(folder + "fd").entryList(QDir::AllEntries | QDir::System).size() - 2;
        values[3] = field(folder + "status", "Threads:");
    }

    static int field(const QString &path, const char *name)
    {
        QFile file(path);
        const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return text.mid(text.indexOf(name) + int(qstrlen(name))).simplified().split(' ').at(0).toInt();
    }
};
constexpr const char *CostNames[] = {"resident KiB", "private dirty KiB", "descriptors", "threads"};

/// A client that asks, waits for the answer, and asks again, beside all others and while they do not rest.
class Probe
{
public:
    Probe()
        : m_thread([this] { run(); })
    {
    }
    ~Probe()
    {
        m_end = true;
        m_thread.join();
    }

    std::atomic<bool> rests{true};

    /// Microseconds of the tenth from there on, in order. To be asked while it rests.
    std::vector<float> tenth(double from) const
    {
        const size_t size = m_times.size() / 10;
        const auto begin = m_times.begin() + long(double(m_times.size() - size) * from);
        std::vector<float> times(begin, begin + long(size));
        std::sort(times.begin(), times.end());
        return times;
    }

private:
    void run()
    {
        const std::unique_ptr<RawSocket> socket(RawSocket::tcp(MxSite::tcpPort()));
        for (; !m_end; QThread::msleep(5)) {
            if (!rests) {
                QElapsedTimer elapsed;
                elapsed.start();
                socket->send("1?.");
                QByteArray answer;
                do {
                    answer = socket->receive();
                } while (!answer.isEmpty() && !answer.endsWith('.'));
                m_times.push_back(float(elapsed.nsecsElapsed()) / 1000);
            }
        }
    }

    std::vector<float> m_times;
    std::atomic<bool> m_end{false};
    std::thread m_thread;
};

class Soak
{
public:
    Soak(const char *name, TestUnit &unit, int ports, unsigned seed)
        : m_name(name)
        , m_unit(unit)
        , m_load(unit, ports, seed)
    {
    }

    /// \return whether all rules were kept
    bool run(int minutes, const Product &product, Hands &hands)
    {
        const auto all = quint64(minutes * 60 * CommandsPerSecond);
        std::vector<Cost> costs;
        QElapsedTimer elapsed;
        elapsed.start();
        int minute = 0;
        for (int second = 0; m_load.answered() < all; ++second) {
            if (Cost(product.processId()).values[0] == 0) {
                std::printf("%-6s WRONG: the product has ended after %lld s\n", m_name,
                            elapsed.elapsed() / 1000);
                return false;
            }
            loadForASecond(elapsed, all);
            hands.act(m_unit, m_load);
            if (second % 20 == 19 || m_load.answered() >= all) {
                rest();
                if (costs.empty() && m_load.answered() >= qMin(FirstCommands, all / 3)) {
                    costs.emplace_back(product.processId());
                }
            }
            if (elapsed.elapsed() / 60000 > minute) {
                ++minute;
                const Cost now(product.processId());
                std::printf("%-6s %3d min %9llu commands, resident %d, dirty %d, descriptors %d, threads %d, "
                            "%d maps, %d wrong\n",
                            m_name, minute, m_load.answered(), now.values[0], now.values[1], now.values[2],
                            now.values[3], m_maps, m_wrong + m_load.faults());
            }
        }
        rest();
        costs.emplace_back(product.processId());
        return report(costs.front(), costs.back());
    }

private:
    void loadForASecond(const QElapsedTimer &elapsed, quint64 all)
    {
        m_probe.rests = false;
        const qint64 endMs = elapsed.elapsed() + 1000;
        while (elapsed.elapsed() < endMs && m_load.answered() < all) {
            m_load.step(qMin(all, quint64(double(elapsed.elapsed()) / 1000 * CommandsPerSecond)));
            QThread::msleep(10);
        }
    }

    /// Everybody waits; the board must show what the commands sum up to, and what a scene does.
    void rest()
    {
        m_probe.rests = true;
        check(m_load.rest(), "a command was not answered");
        check(m_unit.boardShows(m_load.routing), "the board shows another map");
        m_load.changeScenes();
        check(m_unit.boardShows(m_load.routing), "the board shows another map after a scene");
        checkPassedFrames();
        check(m_load.greet(), "a client is not served");
        QCoreApplication::processEvents(); // reads what the product prints
        ++m_maps;
    }

    void checkPassedFrames()
    {
        const std::vector<sim::PassedFrame> passed = m_unit.hardware().board().passedFrames();
        const auto &sent = m_load.passedFrames;
        bool same = int(passed.size()) >= sent.size();
        for (int i = 0; same && i < sent.size(); ++i) {
            const auto &bytes = passed[passed.size() - size_t(sent.size() - i)].bytes;
            same = std::equal(bytes.begin(), bytes.end(), sent[i].begin(), sent[i].end(),
                              [](quint8 a, char b) { return a == quint8(b); });
        }
        check(same, "a request was lost");
        m_load.passedFrames.clear();
    }

    void check(bool good, const char *what)
    {
        if (!good) {
            std::printf("%-6s WRONG: %s\n", m_name, what);
            ++m_wrong;
        }
    }

    bool row(const char *what, double first, double last, bool kept)
    {
        std::printf("%-6s %-22s %12.0f %12.0f   %s\n", m_name, what, first, last, kept ? "kept" : "BROKEN");
        return kept;
    }

    bool report(const Cost &first, const Cost &last)
    {
        std::printf("%-6s %-22s %12s %12s\n", m_name, "", "at first", "at the end");
        bool kept = true;
        for (int i = 0; i < 4; ++i) {
            const int a = first.values[i];
            const int b = last.values[i];
            kept &= row(CostNames[i], a, b, i < 2 ? qAbs(b - a) <= a / 50 : a == b);
        }
        const std::vector<float> early = m_probe.tenth(0);
        const std::vector<float> late = m_probe.tenth(1);
        for (const double part : {0.5, 0.99, 1.0}) {
            const auto at = [part](const std::vector<float> &times) {
                return double(times[size_t(double(times.size() - 1) * part)]);
            };
            const QByteArray name =
                part < 1 ? "reply us, p" + QByteArray::number(part * 100) : "reply us, longest";
            kept &= row(name, at(early), at(late), part == 1 || at(late) <= 2 * at(early) + 1000);
        }
        kept &= row("commands answered", 0, double(m_load.answered()), true);
        kept &= row("wrong answers, maps", m_load.faults(), m_wrong, m_load.faults() + m_wrong == 0);
        const QByteArray faults = m_unit.faults();
        std::printf("%s", faults.constData());
        return kept && faults.isEmpty();
    }

    const char *const m_name;
    TestUnit &m_unit;
    Load m_load;
    Probe m_probe;
    int m_maps = 0;
    int m_wrong = 0;
};
} // namespace

/// soak touch|panel MINUTES [SEED]
int main(int argc, char **argv)
{
    prepareTests();
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const bool panel = arguments.value(1) == QLatin1String("panel");
    const int ports = panel ? 40 : 160;
    TestUnit unit(ports, {{"system/keypad", panel ? "1" : "0"}, {"system/sleep", "4"}});
    Product product(true, QLatin1String(panel ? "offscreen" : "xcb"));
    const QMxComm otherProcess(false);
    std::unique_ptr<Hands> hands(panel ? static_cast<Hands *>(new PanelHands) : new TouchHands);
    if (g_mxConfig == nullptr || !unit.boardShows(std::vector<int>(size_t(ports), 1)) ||
        !hands->ready(unit)) {
        qFatal("the unit does not come up");
    }
    return Soak(panel ? "panel" : "touch", unit, ports, arguments.value(3, QStringLiteral("12")).toUInt())
                   .run(arguments.value(2).toInt(), product, *hands)
               ? 0
               : 1;
}
