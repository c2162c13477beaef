#pragma once

#include <QtGlobal>

/// Assembles the text commands of a serial control port; one object per port.
///
/// A command ends with "!", ".", "$", "%" or CR, which is not part of it. A line feed is an ordinary byte.
/// Two terminators in a row make an empty line. A line that reaches 4096 bytes is discarded without a word,
/// and what follows begins a new one. A partial line waits for ever.
class LineAssembler
{
public:
    static constexpr int Capacity = 4096;

    /// \return true when `byte` completed a line; it can be read, and changed, until the next feed
    bool feed(char byte);
    char *line() { return m_line; }
    quint16 length() const { return m_complete; }

private:
    char m_line[Capacity];
    quint16 m_size = 0;
    quint16 m_complete = 0;
};
