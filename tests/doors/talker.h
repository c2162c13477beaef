#pragma once

#include "virtualunit.h"

#include <QByteArray>
#include <deque>
#include <functional>
#include <vector>

/// What became of the commands that went in somewhere.
struct Passage {
    int sent = 0;
    int answered = 0;     ///< by an "OK." each; surplus ones count, and anything else ends the count
    int dropped = 0;      ///< UDP: by the kernel, which says so
    qint64 sendingUs = 0; ///< from the first to the last
    qint64 longestUs = 0; ///< from a command to its reply

    void add(const Passage &other);
};

/// A client of one wire.
struct Talker {
    std::function<void(const QByteArray &)> put;
    std::function<QByteArray()> take; ///< what has come, without waiting
    std::function<int()> drops;       ///< datagrams of and to this client that the kernel has dropped so far

    std::deque<qint64> unanswered; ///< when the commands were sent
    QByteArray received;
};

Talker tcpTalker();
/// To the first or another of the eight ports.
Talker udpTalker(int port = 0);
/// As fast as the line takes it, or a character at a time.
Talker serialTalker(sim::VirtualUnit &hardware, sim::Wire wire, int baud = 0);

/// Sends all blocks, in turn over these talkers, and then waits for the replies until all have come or are
/// known to be lost, at most 20 s. `behind` runs when the last block has gone.
Passage exchange(
    std::vector<Talker> talkers, const QList<QByteArray> &blocks,
    const std::function<void()> &behind = [] {});
