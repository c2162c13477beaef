#include "descriptorlimit.h"
#include "rows.h"
#include "site.h"
#include "talker.h"
#include "testregistry.h"

#include <QCoreApplication>
#include <QTest>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <future>

using sim::Wire;

namespace
{
/// One for each route; or so many, which go through the routes again and again.
QList<QByteArray> commands(const Routes &routes, int count = 0)
{
    QList<QByteArray> all;
    for (int i = 0; i < qMax(count, routes.size()); ++i) {
        const Route &route = routes[i % routes.size()];
        all.append(QByteArray::number(route.second + 1) + "x" + QByteArray::number(route.first + 1) + ".");
    }
    return all;
}

std::vector<Talker> several(int count, const std::function<Talker(int)> &make)
{
    std::vector<Talker> all;
    for (int i = 0; i < count; ++i) {
        all.push_back(make(i));
    }
    return all;
}

Passage overTcp(const Routes &routes, int clients)
{
    return exchange(several(clients, [](int) { return tcpTalker(); }), commands(routes, clients));
}

Passage overUdp(const Routes &routes, int ports)
{
    return exchange(several(ports, udpTalker), commands(routes));
}

/// The same again and again while the program stands still. What the kernel has room for has all routes.
Passage floodUdp(Site &site, const Routes &routes)
{
    const auto program = static_cast<pid_t>(site.processId());
    ::kill(program, SIGSTOP);
    return exchange(several(1, udpTalker), commands(routes, 12800), [=] { ::kill(program, SIGCONT); });
}

Passage overSerial(Site &site, const Routes &routes, int count, int baud)
{
    const int half = routes.size() / 2;
    const auto talk = [&](Wire wire, const Routes &some) {
        return exchange({serialTalker(site.unit().hardware(), wire, baud)}, commands(some, count));
    };
    std::future<Passage> second =
        std::async(std::launch::async, [&] { return talk(Wire::Control1, routes.mid(half)); });
    Passage both = talk(Wire::Control0, routes.mid(0, half));
    both.add(second.get());
    return both;
}

/// A way in. Those without replies say nothing of their commands.
struct Door {
    const char *name;
    Site::Operation operation; ///< what it needs; `Process`: any
    bool inConcert;            ///< whether it goes together with others
    Passage (*pass)(Site &, const Routes &);
};

const Door Doors[] = {
    {"another process, in the record", Site::Process, true,
     [](Site &site, const Routes &routes) { return site.storeFromOutside(routes), Passage{}; }},
    {"both serial ports, as fast as they take it", Site::Process, true,
     [](Site &site, const Routes &routes) { return overSerial(site, routes, 800, 0); }},
    {"both serial ports, 115200 baud", Site::Process, false,
     [](Site &site, const Routes &routes) { return overSerial(site, routes, 0, 115200); }},
    {"TCP, one segment", Site::Process, true,
     [](Site &, const Routes &routes) { return exchange({tcpTalker()}, {commands(routes).join()}); }},
    {"TCP, a segment each, 1 client", Site::Process, true,
     [](Site &, const Routes &routes) { return overTcp(routes, 1); }},
    {"TCP, a segment each, 50 clients", Site::Process, true,
     [](Site &, const Routes &routes) { return overTcp(routes, 50); }},
    {"TCP, a segment each, 500 clients", Site::Process, true,
     [](Site &, const Routes &routes) { return overTcp(routes, 500); }},
    {"UDP, one port", Site::Process, true, [](Site &, const Routes &routes) { return overUdp(routes, 1); }},
    {"UDP, eight ports", Site::Process, true,
     [](Site &, const Routes &routes) { return overUdp(routes, 8); }},
    {"UDP, more than the kernel holds", Site::Process, false, floodUdp},
    {"keys", Site::Panel, true,
     [](Site &site, const Routes &routes) { return site.pressKeys(routes), Passage{}; }},
    {"touches", Site::Touchscreen, true,
     [](Site &site, const Routes &routes) { return site.touch(routes), Passage{}; }},
};

using Choice = std::vector<const Door *>;
} // namespace
Q_DECLARE_METATYPE(Choice)
Q_DECLARE_METATYPE(Site::Operation)

/// Routes that come in by every way, as many and as fast as it takes them: each is answered and reaches the
/// board, in whole frames that keep their distance. Prints what it has measured.
class TestDoors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        DescriptorLimit::raise(); // five hundred clients, and in one case their server besides
        std::printf("%-44s %8s %8s %7s %5s %7s %7s %10s %10s %10s\n", "", "commands", "answered", "dropped",
                    "lost", "right", "frames", "gap ms", "sent in ms", "reply ms");
    }
    void cleanupTestCase() { m_site.reset(); }

    void noRouteIsLost_data()
    {
        columns<Site::Operation, Choice>("operation", "doors");
        for (const Door &door : Doors) {
            row(door.name, door.operation, Choice{&door});
        }
        for (const auto &[name, operation] : {std::pair("all together, with the front panel", Site::Panel),
                                              {"all together, with the touchscreen", Site::Touchscreen}}) {
            Choice all;
            for (const Door &door : Doors) {
                if (door.inConcert && (door.operation == Site::Process || door.operation == operation)) {
                    all.push_back(&door);
                }
            }
            row(name, operation, all);
        }
    }
    void noRouteIsLost()
    {
        QFETCH(Site::Operation, operation);
        QFETCH(Choice, doors);
        if (!m_site || m_operation != operation) {
            m_site.reset();
            m_site = std::make_unique<Site>(operation);
            m_operation = operation;
        }
        TestUnit &unit = m_site->unit();
        QVERIFY(unit.hardware().waitFor([&] { return unit.rises(8) > 0; }, 20000));
        const int framesBefore = unit.rises(8);
        Passage all;
        int right = 0;
        const int rounds = qEnvironmentVariableIsSet("MX_LONG") ? 20 : 1;
        for (int round = 0; round < rounds; ++round) {
            const Routes routes = otherRoutes();
            all.add(passThrough(doors, routes));
            right += unit.boardShows(inputsOf(routes)) ? 1 : 0;
        }
        const int frames = unit.rises(8) - framesBefore;
        const qint64 gap = unit.smallestGapUs(frames);
        const int lost = all.sent - all.answered - all.dropped;
        std::printf("%-44s %8d %8d %7d %5d %3d/%-3d %7d %10.1f %10.1f %10.1f\n", QTest::currentDataTag(),
                    all.sent, all.answered, all.dropped, lost, right, rounds, frames, double(gap) / 1e3,
                    double(all.sendingUs) / 1e3, double(all.longestUs) / 1e3);
        std::fflush(stdout);
        QCOMPARE(lost, 0);
        QCOMPARE(right, rounds);
        QCOMPARE(unit.faults(), QByteArray());
        QVERIFY(frames >= rounds);
    }

private:
    /// For every output one that it does not show.
    static Routes otherRoutes()
    {
        Routes routes;
        const int ports = g_mxConfig->port;
        for (int output = 0; output < ports; ++output) {
            routes.append({output, (g_mxConfig->map[output] + 1 + output % (ports - 1)) % ports});
        }
        return routes;
    }

    static std::vector<int> inputsOf(const Routes &routes)
    {
        std::vector<int> inputs;
        for (const Route &route : routes) {
            inputs.push_back(route.second + 1);
        }
        return inputs;
    }

    /// Each door has outputs of its own, and a thread; touches have this one.
    Passage passThrough(const Choice &doors, const Routes &routes)
    {
        std::vector<Routes> shares(doors.size());
        for (const Route &route : routes) {
            shares[size_t(route.first) % doors.size()].append(route);
        }
        std::vector<std::future<Passage>> passages;
        for (size_t i = 0; i < doors.size(); ++i) {
            const Door &door = *doors[i];
            const auto policy =
                door.operation == Site::Touchscreen ? std::launch::deferred : std::launch::async;
            passages.push_back(std::async(policy, [&, i] { return door.pass(*m_site, shares[i]); }));
        }
        Passage all;
        for (auto passage = passages.rbegin(); passage != passages.rend(); ++passage) {
            while (passage->wait_for(std::chrono::seconds(0)) == std::future_status::timeout) {
                QCoreApplication::processEvents();
            }
            all.add(passage->get());
        }
        return all;
    }

    Site::Operation m_operation = Site::Process;
    std::unique_ptr<Site> m_site;
};

static const RegisteredTest<TestDoors> registered;
#include "testdoors.moc"
