#include "seriallink.h"

#include <unistd.h>

namespace sim
{
namespace
{
constexpr std::size_t MaxOutgoing = 1024 * 1024;
} // namespace

SerialLink::SerialLink(const std::string &path)
    : PtyNode(path)
{
}

termios SerialLink::attributes() const
{
    termios attributes{};
    ::tcgetattr(m_slave.get(), &attributes);
    return attributes;
}

void SerialLink::send(const std::string &bytes, qint64 notBeforeUs)
{
    if (bytes.empty() || m_outgoingSize + bytes.size() > MaxOutgoing) {
        return;
    }
    m_outgoing.push_back({bytes, notBeforeUs});
    m_outgoingSize += bytes.size();
}

void SerialLink::flush(qint64 nowUs)
{
    while (!m_outgoing.empty() && m_outgoing.front().notBeforeUs <= nowUs) {
        std::string &bytes = m_outgoing.front().bytes;
        const ssize_t count = ::write(m_far.get(), bytes.data(), bytes.size());
        const std::size_t gone = count > 0 ? static_cast<std::size_t>(count) : 0;
        m_outgoingSize -= gone;
        if (gone < bytes.size()) {
            bytes.erase(0, gone);
            return;
        }
        m_outgoing.pop_front();
    }
}
} // namespace sim
