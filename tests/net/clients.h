#pragma once

#include "rawsocket.h"

#include <QByteArray>
#include <QCoreApplication>
#include <chrono>
#include <future>
#include <memory>

using Socket = std::unique_ptr<RawSocket>;

/// Runs `client` in a thread beside the event loop that serves it.
template <typename Client>
void besideTheUnit(Client client)
{
    const std::future<void> end = std::async(std::launch::async, client);
    while (end.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        QCoreApplication::processEvents();
    }
}

/// Every byte up to and with the `count`th reply, or all until the connection ends.
QByteArray replies(const RawSocket &socket, int count);

/// Asks from such a thread.
QByteArray reply(const RawSocket &socket, const QByteArray &command);

/// Sends the block over a connection of its own and no more than that. \return all that comes until the unit
/// closes as well
QByteArray repliesOverTcp(const QByteArray &block);

/// Bytes that the process has allocated and not freed.
qint64 heapBytes();
