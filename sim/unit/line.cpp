#include "line.h"

#include <utility>

namespace sim
{
namespace
{
constexpr qint64 CutUs = 100'000;

/// Ends of commands, starts of frames, and bytes that only a broken line makes.
const std::string Noise("\x00\xFF\xEB\xEB\x90\x7F 1x2.\r\x80\xEB\x90\x10\x01\x00", 18);
} // namespace

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
    return has(Fault::Stuck) ? -1 : m_node->descriptor();
}

void Line::receive()
{
    if (!has(Fault::Stuck)) {
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
    if (has(Fault::Noise)) {
        m_serial->send(Noise);
    }
    return true;
}

void Line::idle(qint64 nowUs)
{
    if (m_farEnd) {
        m_farEnd->idle(nowUs);
    }
}

void Line::flush(qint64 nowUs)
{
    if (m_farEnd) {
        send(m_farEnd->takeSent(), nowUs);
    }
    if (m_serial) {
        m_serial->flush(nowUs);
    }
}

void Line::send(const std::string &bytes, qint64 nowUs)
{
    if (!m_serial) {
        return;
    }
    const std::size_t first = has(Fault::CutInTwo) ? bytes.size() / 2 : bytes.size();
    m_serial->send(bytes.substr(0, first));
    m_serial->send(bytes.substr(first), nowUs + CutUs);
}

termios Line::attributes() const
{
    return m_serial ? m_serial->attributes() : termios{};
}

void Line::inject(Fault fault)
{
    if (!m_serial) {
        return;
    }
    m_faults.insert(fault);
    if (fault == Fault::GarbageFirst) {
        m_serial->send(Noise);
    }
}

Result Line::plugCable(const std::string &path)
{
    m_cable = std::make_unique<PatchCable>(path);
    m_farEnd = m_cable.get();
    return m_cable->made();
}
} // namespace sim
