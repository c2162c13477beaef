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
    if (m_replyQueue < 0) {
        return;
    }
    for (int i = 0; i < MostPerStep && passRequest(); ++i) {
    }
    for (int i = 0; i < MostPerStep && dropAnswer(); ++i) {
    }
}

/// False when there is none.
bool QueueRelay::passRequest() const
{
    Message message;
    const ssize_t received = ::msgrcv(m_requestQueue, &message, TextSize, 0, IPC_NOWAIT | MSG_NOERROR);
    if (received < 0) {
        return false;
    }
    // The sender's count is never trusted beyond what has really come.
    const auto size = static_cast<std::size_t>(received);
    const std::size_t data = size > CountSize ? size - CountSize : 0;
    const std::size_t count = data > 0 ? std::min<std::size_t>(message.count, data) : 0;
    if (count > 0) {
        m_link.writeFlushed(message.data, static_cast<int>(count));
    }
    return true;
}

/// False when the link is empty.
bool QueueRelay::dropAnswer() const
{
    Message message;
    const int count = m_link.read(message.data, sizeof message.data);
    if (count <= 0) {
        return false;
    }
    // The kernel refuses type 0: the bytes are dropped, and the link stays empty.
    message.type = 0;
    message.count = static_cast<std::uint32_t>(count);
    ::msgsnd(m_replyQueue, &message, TextSize, IPC_NOWAIT);
    return true;
}
