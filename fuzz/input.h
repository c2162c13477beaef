#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>

/// Takes an input apart from its beginning; behind its end are zeros.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_left(reinterpret_cast<const char *>(data), int(size))
    {
    }

    bool isEmpty() const { return m_left.isEmpty(); }
    QByteArray bytes(int count)
    {
        const QByteArray taken = m_left.left(count);
        m_left.remove(0, count);
        return taken;
    }
    /// Low byte first.
    int number(int bytesOfIt)
    {
        unsigned value = 0;
        int shift = 0;
        for (const char byte : bytes(bytesOfIt)) {
            value |= unsigned(static_cast<unsigned char>(byte)) << shift;
            shift += 8;
        }
        return int(value);
    }
    /// One of several texts, which RS ends.
    QByteArray text()
    {
        const int end = m_left.indexOf('\x1E');
        const QByteArray taken = bytes(end < 0 ? m_left.size() : end);
        bytes(1);
        return taken;
    }
    QByteArray rest() { return bytes(m_left.size()); }

private:
    QByteArray m_left;
};
