#include "clients.h"

#include "mxsite.h"

#include <climits>
#include <malloc.h>
#include <sys/socket.h>

/// Of the sanitizers' allocators; missing without one.
extern "C" size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

QByteArray replies(const RawSocket &socket, int count)
{
    QByteArray all;
    QByteArray more;
    do {
        more = socket.receive();
        all += more;
    } while (!more.isEmpty() && all.count('.') < count);
    return all;
}

QByteArray reply(const RawSocket &socket, const QByteArray &command)
{
    QByteArray got;
    besideTheUnit([&] {
        socket.send(command);
        got = replies(socket, 1);
    });
    return got;
}

QByteArray repliesOverTcp(const QByteArray &block)
{
    QByteArray got;
    besideTheUnit([&] {
        const Socket client(RawSocket::tcp(MxSite::tcpPort()));
        client->send(block);
        ::shutdown(client->descriptor(), SHUT_WR);
        got = replies(*client, INT_MAX);
    });
    return got;
}

qint64 heapBytes()
{
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
    }
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<qint64>(heap.uordblks) + static_cast<qint64>(heap.hblkhd);
}
