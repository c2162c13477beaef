#pragma once

#include <QtGlobal>

class TestUnit;

/// The measurements of bench_wires. Each prints its rows of the table.

/// Who serves at which ports.
struct Server {
    qint64 processId;
    quint16 tcpPort;
    quint16 udpPort;
};

/// Request to reply over TCP and UDP, and commands a second in blocks, of the product beside the echo server.
void measureNetwork(const Server &product, const Server &echo);

/// Command to the first byte of the switch frame, with the sender idle.
void measureLatency(TestUnit &unit);

/// Which of its unit's devices the product serves.
enum class Operation { Touchscreen, FrontPanel };

/// Share of a core and memory of the idle process over 30 s, beside a bare program that makes the same system
/// calls in the same seconds.
void measureIdle(qint64 processId, Operation operation);
