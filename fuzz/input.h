#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>

/// Takes an input apart, from front to back; behind its end are zeros.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_next(data)
        , m_end(data + size)
    {
    }

    bool isOver() const { return m_next == m_end; }
    int byte() { return isOver() ? 0 : *m_next++; }
    int below(int limit) { return byte() % limit; }
    int word()
    {
        const int high = byte();
        return high << 8 | byte();
    }

    /// As many as a byte says, fewer at the end.
    QByteArray bytes()
    {
        const int wanted = byte();
        const int size = qMin(wanted, static_cast<int>(m_end - m_next));
        m_next += size;
        return QByteArray(reinterpret_cast<const char *>(m_next - size), size);
    }

    /// Near the display, or as far away as numbers go.
    int place()
    {
        const int place = static_cast<std::int8_t>(byte());
        return place == INT8_MAX ? INT32_MAX : place == INT8_MIN ? INT32_MIN : place;
    }

private:
    const std::uint8_t *m_next;
    const std::uint8_t *const m_end;
};
