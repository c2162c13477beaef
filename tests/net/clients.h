#pragma once

#include "rawsocket.h"

#include <QByteArray>
#include <QCoreApplication>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using Socket = std::unique_ptr<RawSocket>;

/// Runs `client` in `count` threads beside the event loop that serves them.
template <typename Client>
void withClients(int count, Client client)
{
    std::atomic<int> running{count};
    std::vector<std::thread> threads;
    threads.reserve(size_t(count));
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            client(i);
            --running;
        });
    }
    while (running > 0) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
}

/// Every byte up to and with the `count`th reply, or all until the connection ends.
inline QByteArray replies(const RawSocket &socket, int count)
{
    QByteArray all;
    QByteArray more;
    do {
        more = socket.receive();
        all += more;
    } while (!more.isEmpty() && all.count('.') < count);
    return all;
}

/// Bytes that the process has allocated and not freed.
qint64 heapBytes();
