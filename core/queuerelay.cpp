#include "queuerelay.h"

#include "matrixlink.h"

#include <algorithm>
#include <cstdint>
#include <sys/msg.h>

namespace
{
struct Message {
    long type;
    std::uint32_t count;
    unsigned char data[512];
};
constexpr std::size_t CountSize = sizeof(Message::count);
constexpr std::size_t TextSize = CountSize + sizeof(Message::data);
} // namespace

QueueRelay::QueueRelay(const MatrixLink &link, int requestQueue, int replyQueue)
    : m_link(link)
    , m_requestQueue(requestQueue)
    , m_replyQueue(replyQueue)
{
}

void QueueRelay::step() const
{
    if (m_replyQueue >= 0) {
        drainRequests();
        drainLink();
    }
}

void QueueRelay::drainRequests() const
{
    Message message;
    ssize_t received = 0;
    while ((received = ::msgrcv(m_requestQueue, &message, TextSize, 0, IPC_NOWAIT | MSG_NOERROR)) >= 0) {
        // The sender's count is never trusted beyond what has really come.
        const auto size = static_cast<std::size_t>(received);
        const std::size_t data = size > CountSize ? size - CountSize : 0;
        const std::size_t count = data > 0 ? std::min<std::size_t>(message.count, data) : 0;
        if (count > 0) {
            m_link.writeFlushed(message.data, static_cast<int>(count));
        }
    }
}

void QueueRelay::drainLink() const
{
    Message message;
    int count = 0;
    while ((count = m_link.read(message.data, sizeof message.data)) > 0) {
        // The kernel refuses type 0: the bytes are dropped, and the link stays empty.
        message.type = 0;
        message.count = static_cast<std::uint32_t>(count);
        ::msgsnd(m_replyQueue, &message, TextSize, IPC_NOWAIT);
    }
}
