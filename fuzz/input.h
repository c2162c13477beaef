#pragma once

#include <QByteArray>
#include <algorithm>
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

    bool isEmpty() const { return m_next == m_end; }
    int byte() { return isEmpty() ? 0 : *m_next++; }
    int below(int limit) { return byte() % limit; }
    int word()
    {
        const int high = byte();
        return high << 8 | byte();
    }
    /// Low byte first.
    int number(int bytesOfIt)
    {
        unsigned value = 0;
        for (int i = 0; i < bytesOfIt; ++i) {
            value |= unsigned(byte()) << 8 * i;
        }
        return int(value);
    }

    /// Fewer at the end.
    QByteArray bytes(int count)
    {
        const auto *taken = reinterpret_cast<const char *>(m_next);
        const int size = std::min(count, int(m_end - m_next));
        m_next += size;
        return QByteArray(taken, size);
    }
    /// As many as a byte says.
    QByteArray bytes() { return bytes(byte()); }
    QByteArray rest() { return bytes(int(m_end - m_next)); }
    /// One of several texts, which RS ends.
    QByteArray text()
    {
        QByteArray taken = bytes(int(std::find(m_next, m_end, 0x1E) - m_next));
        byte();
        return taken;
    }

    /// Near the display, or as far away as numbers go.
    int place()
    {
        const int place = (byte() ^ 0x80) - 0x80;
        return place == INT8_MAX ? INT32_MAX : place == INT8_MIN ? INT32_MIN : place;
    }

private:
    const std::uint8_t *m_next;
    const std::uint8_t *const m_end;
};
