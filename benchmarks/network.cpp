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
void compare(const char *name, double limit, int calls, const std::function<void()> &product,
             const std::function<void()> &echo)
{
    Samples ours;
    Samples theirs;
    for (int round = 0; round < 40; ++round) {
        for (int i = 0; i < calls; ++i) {
            ours.add(timed(product));
        }
        for (int i = 0; i < calls; ++i) {
            theirs.add(timed(echo));
        }
    }
    std::printf("%-34s %9.1f us %9.1f us %9.2f   (at most %.2f)\n", name, ours.median(), theirs.median(),
                ours.median() / theirs.median(), limit);
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
    sockets.reserve(static_cast<size_t>(count));
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

void compareBlocks(const Server &server, const Server &peer, int count, double limit)
{
    const std::vector<Socket> product = connections(server.tcpPort, count);
    const std::vector<Socket> echo = connections(peer.tcpPort, count);
    Samples ours;
    Samples theirs;
    for (int round = 0; round < 2000 / count; ++round) {
        ours.add(blocks(product, 3));
        theirs.add(blocks(echo, int(sizeof Command) - 1));
    }
    std::printf("%-2d connection%-21s %7.2f M/s %7.2f M/s %9.2f   (at most %.2f)\n", count,
                count > 1 ? "s" : "", 1 / ours.median(), 1 / theirs.median(), ours.median() / theirs.median(),
                limit);
}

/// One command on each of the sockets, then the replies of all.
std::function<void()> oneEach(const std::vector<Socket> &sockets)
{
    return [&sockets] {
        for (const Socket &socket : sockets) {
            socket->send(Command);
        }
        for (const Socket &socket : sockets) {
            socket->receive();
        }
    };
}

/// 50 clients with one command each at a time, beside so many that are silent.
void compareBusy(const Server &product, const Server &echo, int idle, double limit)
{
    const std::vector<Socket> idleOurs = connections(product.tcpPort, idle);
    const std::vector<Socket> idleTheirs = connections(echo.tcpPort, idle);
    const std::vector<Socket> ours = connections(product.tcpPort, 50);
    const std::vector<Socket> theirs = connections(echo.tcpPort, 50);
    const QByteArray name = "    TCP, 50 clients beside " + QByteArray::number(idle) + " idle";
    compare(name, limit, 20, oneEach(ours), oneEach(theirs));
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
    compare("    TCP, median", 1.05, 500, overTcp(tcp), overTcp(echoTcp));

    const Socket udp(RawSocket::udp());
    const auto overUdp = [&udp](quint16 port) {
        return [&udp, port] {
            udp->sendTo(port, Command);
            udp->receive();
        };
    };
    compare("    UDP, median", 1.05, 500, overUdp(product.udpPort), overUdp(echo.udpPort));
}
} // namespace

void measureNetwork(const Server &product, const Server &echo)
{
    // Where the scheduler puts client and server decides more than either does; so both cases are made.
    pin(product.processId, 1);
    pin(echo.processId, 1);
    std::printf(
        "\nthe peer: a bare server on Qt's sockets, as Qt sets them up, that sends back what it gets\n"
        "(a command of 6 bytes; the product's reply has 3)\n");
    std::printf("request to reply                      product         echo     ratio\n");
    std::printf("client on the server's core\n");
    pin(0, 1);
    compareRequests(product, echo);
    std::printf("client on another core\n");
    pin(0, 0);
    compareRequests(product, echo);
    compareBusy(product, echo, 0, 1.1);
    compareBusy(product, echo, 1000, 1.1);

    std::printf("\ncommands a second, in blocks of %d over TCP, and time beside the echo's\n", BlockCommands);
    compareBlocks(product, echo, 1, 1.3);
    compareBlocks(product, echo, 50, 1.6);
}
