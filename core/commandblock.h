#pragma once

#include <QByteArray>

/// Cuts a block of text, as a network client sends it, into command lines. "!", "%", "$", CR and LF end a
/// command as "." does, upper case is folded, empty lines are skipped, and the last line needs no terminator.
class CommandBlock
{
public:
    /// A line's length has 16 bits, so a block holds at most this many bytes.
    static constexpr int MaxSize = 0xFFFF;

    CommandBlock() = default;
    /// Takes the first `MaxSize` bytes of `bytes`.
    explicit CommandBlock(QByteArray bytes);

    /// Goes to the next line. \return false when there is none
    bool next();
    /// The line, NUL-terminated at `length()`; it may be changed.
    char *line() { return m_bytes.data() + m_start; }
    quint16 length() const { return static_cast<quint16>(m_end - m_start); }
    /// True when no byte is left behind the present line.
    bool atEnd() const { return m_end >= m_bytes.size(); }

private:
    QByteArray m_bytes;
    int m_start = 0;
    int m_end = 0;
};
