#include "rawsocket.h"
#include "samples.h"
#include "wires.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <sched.h>

namespace
{
using Socket = std::unique_ptr<RawSocket>;
constexpr char Command[] = "3x1&4.";
constexpr int BlockCommands = 1000;

double timed(const std::function<void()> &work)
{
    const double start = nowMicroseconds();
    work();
    return nowMicroseconds() - start;
}

/// Takes turns, so that both meet the same machine.
void compare(const char *name, const std::function<void()> &product, const std::function<void()> &echo)
{
    Samples ours;
    Samples theirs;
    for (int round = 0; round < 40; ++round) {
        for (int i = 0; i < 500; ++i) {
            ours.add(timed(product));
        }
        for (int i = 0; i < 500; ++i) {
            theirs.add(timed(echo));
        }
    }
    std::printf("%-30s %10.1f us %10.1f us %9.2f   (at most 1.15)\n", name, ours.median(), theirs.median(),
                ours.median() / theirs.median());
}

void receiveBytes(const RawSocket &socket, int size)
{
    while (size > 0) {
        const QByteArray more = socket.receive();
        if (more.isEmpty()) {
            qFatal("a connection was lost");
        }
        size -= more.size();
    }
}

std::vector<Socket> connections(quint16 port, int count)
{
    std::vector<Socket> sockets;
    for (int i = 0; i < count; ++i) {
        sockets.emplace_back(RawSocket::tcp(port));
    }
    return sockets;
}

/// One block to every connection, then the replies of all. \return microseconds a command
double blocks(const std::vector<Socket> &sockets, int replySize)
{
    static const QByteArray block = QByteArray(Command).repeated(BlockCommands);
    const double duration = timed([&] {
        for (const Socket &socket : sockets) {
            socket->send(block);
        }
        for (const Socket &socket : sockets) {
            receiveBytes(*socket, replySize * BlockCommands);
        }
    });
    return duration / (BlockCommands * static_cast<double>(sockets.size()));
}

void compareBlocks(const Server &server, const Server &peer, int count)
{
    const std::vector<Socket> product = connections(server.tcpPort, count);
    const std::vector<Socket> echo = connections(peer.tcpPort, count);
    Samples ours;
    Samples theirs;
    for (int round = 0; round < 2000 / count; ++round) {
        ours.add(blocks(product, 3));
        theirs.add(blocks(echo, int(sizeof Command) - 1));
    }
    std::printf("%-2d connection%-17s %8.2f M/s %8.2f M/s %9.2f\n", count, count > 1 ? "s" : "",
                1 / ours.median(), 1 / theirs.median(), ours.median() / theirs.median());
}

/// Keeps the main thread of a process, or the calling thread (0), on one core.
void pin(qint64 processId, int core)
{
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(core, &cores);
    sched_setaffinity(static_cast<pid_t>(processId), sizeof cores, &cores);
}

void compareRequests(const Server &product, const Server &echo)
{
    const auto overTcp = [](const Socket &socket) {
        return [&socket] {
            socket->send(Command);
            socket->receive();
        };
    };
    const Socket tcp(RawSocket::tcp(product.tcpPort));
    const Socket echoTcp(RawSocket::tcp(echo.tcpPort));
    compare("    TCP, median", overTcp(tcp), overTcp(echoTcp));

    const Socket udp(RawSocket::udp());
    const auto overUdp = [&udp](quint16 port) {
        return [&udp, port] {
            udp->sendTo(port, Command);
            udp->receive();
        };
    };
    compare("    UDP, median", overUdp(product.udpPort), overUdp(echo.udpPort));
}
} // namespace

void measureNetwork(const Server &product, const Server &echo)
{
    // Where the scheduler puts client and server decides more than either does; so both cases are made.
    pin(product.processId, 1);
    pin(echo.processId, 1);
    std::printf("\nrequest to reply, one client      product          echo     ratio\n");
    std::printf("client on the server's core\n");
    pin(0, 1);
    compareRequests(product, echo);
    std::printf("client on another core\n");
    pin(0, 0);
    compareRequests(product, echo);

    std::printf("\ncommands a second, in blocks of %d over TCP, and time beside the echo's\n", BlockCommands);
    compareBlocks(product, echo, 1);
    compareBlocks(product, echo, 50);
}
