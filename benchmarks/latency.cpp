#include "mxsite.h"
#include "rawsocket.h"
#include "samples.h"
#include "testunit.h"
#include "wires.h"

#include <QThread>
#include <cmath>
#include <cstdio>
#include <memory>

namespace
{
constexpr int Count = 150;
constexpr unsigned long HoldOffMs = 560;

/// Microseconds that spread the commands evenly over two passes of the control loop: multiples of the golden
/// ratio leave no gaps, however many there are.
unsigned long phase(int i)
{
    return static_cast<unsigned long>(20000 * std::fmod(i * 0.6180339887, 1.0));
}

/// Sends a command that changes the routing whenever the sender is idle.
template <typename Send>
void measure(TestUnit &unit, const char *name, Send send)
{
    Samples samples;
    size_t frames = unit.hardware().board().switchFrames().size();
    for (int i = 0; i < Count; ++i) {
        QThread::msleep(HoldOffMs);
        QThread::usleep(20000 + phase(i));
        const double sent = nowMicroseconds();
        send(i % 2 == 0 ? "2x1." : "3x1.");
        unit.hardware().waitFor([&] { return unit.hardware().board().switchFrames().size() > frames; }, 5000);
        const std::vector<sim::SwitchFrame> all = unit.hardware().board().switchFrames();
        samples.add(static_cast<double>(all.back().timeUs) - sent);
        frames = all.size();
    }
    std::printf("%-46s %10.2f ms   (at most  6)\n", name, samples.median() / 1000);
    std::printf("%-46s %10.2f ms   (at most 12)\n", "    99th percentile", samples.percentile(99) / 1000);
}
} // namespace

void measureLatency(TestUnit &unit)
{
    std::printf("\n%d commands, sender idle: to the first byte of the switch frame at the board\n", Count);
    const std::unique_ptr<RawSocket> socket(RawSocket::tcp(MxSite::tcpPort()));
    measure(unit, "over TCP, median", [&](const char *command) {
        socket->send(command);
        socket->receive();
    });
    measure(unit, "over serial, median",
            [&](const char *command) { unit.hardware().send(sim::Wire::Control0, command); });
}
