#include "seriallink.h"

#include <cstddef>
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

void SerialLink::send(const std::string &bytes)
{
    if (m_outgoing.size() + bytes.size() <= MaxOutgoing) {
        m_outgoing += bytes;
    }
}

void SerialLink::flush()
{
    if (m_outgoing.empty()) {
        return;
    }
    const ssize_t count = ::write(m_far.get(), m_outgoing.data(), m_outgoing.size());
    m_outgoing.erase(0, count > 0 ? static_cast<std::size_t>(count) : 0);
}
} // namespace sim
