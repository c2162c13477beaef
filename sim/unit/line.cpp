#include "line.h"

#include <utility>

namespace sim
{
Line::Line(const std::string &root, const WireRow &row, FarEnds &ends)
    : m_farEnd(row.farEnd(ends))
{
    const std::string path = root + row.device;
    if (row.kind == WireKind::Serial) {
        auto serial = std::make_unique<SerialLink>(path);
        m_serial = serial.get();
        m_node = std::move(serial);
    } else {
        m_node = std::make_unique<FifoNode>(path);
    }
}

int Line::descriptor() const
{
    return m_stuck ? -1 : m_node->descriptor();
}

void Line::receive()
{
    if (!m_stuck) {
        m_arrived = m_node->receive();
    }
}

bool Line::feed(qint64 nowUs)
{
    const std::string arrived = std::exchange(m_arrived, {});
    if (arrived.empty()) {
        return false;
    }
    const auto *bytes = reinterpret_cast<const quint8 *>(arrived.data());
    m_recorder.feed(bytes, arrived.size(), nowUs);
    if (m_farEnd) {
        m_farEnd->feed(bytes, arrived.size(), nowUs);
    }
    return true;
}

void Line::idle(qint64 nowUs)
{
    if (m_farEnd) {
        m_farEnd->idle(nowUs);
    }
}

void Line::flush()
{
    if (m_farEnd) {
        send(m_farEnd->takeSent());
    }
    if (m_serial) {
        m_serial->flush();
    }
}

void Line::send(const std::string &bytes)
{
    if (m_serial) {
        m_serial->send(bytes);
    }
}

termios Line::attributes() const
{
    return m_serial ? m_serial->attributes() : termios{};
}

Result Line::plugCable(const std::string &path)
{
    m_cable = std::make_unique<PatchCable>(path);
    m_farEnd = m_cable.get();
    return m_cable->made();
}
} // namespace sim
