#include "talker.h"

#include "mxsite.h"
#include "rawsocket.h"

#include <QFile>
#include <QThread>
#include <chrono>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>

using Clock = std::chrono::steady_clock;

constexpr qint64 PatienceUs = 20'000'000;

namespace
{
qint64 nowUs()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count();
}

/// By the kernel's table of sockets, whose last column says it. While others come and go, a reading may have
/// a socket twice or not at all.
int dropsAt(int port)
{
    const QByteArray place = ':' + QByteArray::number(port, 16).toUpper().rightJustified(4, '0');
    for (int tries = 0; tries < 100; ++tries) {
        QFile table(QStringLiteral("/proc/net/udp"));
        table.open(QIODevice::ReadOnly);
        for (const QByteArray &line : table.readAll().split('\n')) {
            const QList<QByteArray> columns = line.simplified().split(' ');
            if (columns.value(1).endsWith(place)) {
                return columns.last().toInt();
            }
        }
    }
    qFatal("no UDP port %d", port);
}

QByteArray takeFrom(const RawSocket &socket)
{
    char bytes[65536];
    const auto count = ::recv(socket.descriptor(), bytes, sizeof bytes, MSG_DONTWAIT);
    return count > 0 ? QByteArray(bytes, int(count)) : QByteArray();
}

void collect(Talker &talker, Passage &passage)
{
    for (QByteArray more = talker.take(); !more.isEmpty(); more = talker.take()) {
        talker.received += more;
        for (; talker.received.startsWith("OK."); talker.received.remove(0, 3)) {
            ++passage.answered;
            if (!talker.unanswered.empty()) {
                passage.longestUs = qMax(passage.longestUs, nowUs() - talker.unanswered.front());
                talker.unanswered.pop_front();
            }
        }
    }
}
} // namespace

void Passage::add(const Passage &other)
{
    sent += other.sent;
    answered += other.answered;
    dropped += other.dropped;
    sendingUs = qMax(sendingUs, other.sendingUs);
    longestUs = qMax(longestUs, other.longestUs);
}

Talker tcpTalker()
{
    const std::shared_ptr<RawSocket> socket(RawSocket::tcp(MxSite::tcpPort()));
    const int on = 1; // a segment for each block
    ::setsockopt(socket->descriptor(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return {[=](const QByteArray &block) { socket->send(block); },
            [=] { return takeFrom(*socket); },
            [] { return 0; },
            {},
            {}};
}

Talker udpTalker(int port)
{
    const std::shared_ptr<RawSocket> socket(RawSocket::udp());
    const auto to = static_cast<quint16>(MxSite::udpPort() + port);
    const int room = 4 * 1024 * 1024; // for the replies to a flood
    ::setsockopt(socket->descriptor(), SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
    sockaddr_in own{};
    own.sin_family = AF_INET;
    socklen_t size = sizeof own;
    if (::bind(socket->descriptor(), reinterpret_cast<sockaddr *>(&own), size) != 0 ||
        ::getsockname(socket->descriptor(), reinterpret_cast<sockaddr *>(&own), &size) != 0) {
        qFatal("no UDP port of its own");
    }
    return {[=](const QByteArray &block) { socket->sendTo(to, block); },
            [=] { return takeFrom(*socket); },
            [=] { return dropsAt(to) + dropsAt(ntohs(own.sin_port)); },
            {},
            {}};
}

Talker serialTalker(sim::VirtualUnit &hardware, sim::Wire wire, int baud)
{
    const auto put = [&hardware, wire, baud](const QByteArray &block) {
        if (baud == 0) {
            return hardware.send(wire, block.toStdString());
        }
        auto due = Clock::now();
        for (const char byte : block) {
            hardware.send(wire, {byte});
            due += std::chrono::nanoseconds(10'000'000'000 / baud); // ten bits
            std::this_thread::sleep_until(due);
        }
    };
    const auto take = [&hardware, wire] { return QByteArray::fromStdString(hardware.takeReceived(wire)); };
    return {put, take, [] { return 0; }, {}, {}};
}

Passage exchange(std::vector<Talker> talkers, const QList<QByteArray> &blocks,
                 const std::function<void()> &behind)
{
    Passage passage;
    const auto drops = [&] {
        int all = 0;
        for (const Talker &talker : talkers) {
            all += talker.drops();
        }
        return all;
    };
    const int before = drops();
    const qint64 begun = nowUs();
    for (int i = 0; i < blocks.size(); ++i) {
        Talker &talker = talkers[size_t(i) % talkers.size()];
        const int commands = blocks[i].count('.');
        talker.unanswered.insert(talker.unanswered.end(), size_t(commands), nowUs());
        talker.put(blocks[i]);
        passage.sent += commands;
    }
    passage.sendingUs = nowUs() - begun;
    behind();
    while (passage.answered + passage.dropped < passage.sent && nowUs() - begun < PatienceUs) {
        QThread::usleep(100);
        for (Talker &talker : talkers) {
            collect(talker, passage);
        }
        passage.dropped = drops() - before;
    }
    return passage;
}
