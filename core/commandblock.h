#pragma once

/// Cuts a block of text, as a network client sends it, into command lines. "!", "%", "$", CR and LF end a
/// command as "." does, and empty lines are skipped. It looks at the bytes where they are and changes
/// nothing.
class CommandBlock
{
public:
    /// What the end of the bytes means for a last line without a terminator.
    enum End {
        Final, ///< it is a line like any other
        Open,  ///< it may go on and is left where it is
    };

    /// `size` bytes at `bytes`, which stay there as long as this object is used.
    CommandBlock(const char *bytes, int size, End end);

    /// Goes to the next line. \return false when there is none
    bool next();
    const char *line() const { return m_line; }
    int length() const { return m_length; }

    /// Puts the present line back, to be the next one.
    void unread() { m_next = m_line; }
    /// Bytes that are done with: all in front of the next line.
    int position() const { return static_cast<int>(m_next - m_begin); }
    bool atEnd() const { return m_next == m_end; }

private:
    const char *const m_begin;
    const char *const m_end;
    const End m_endMeans;
    const char *m_next;
    const char *m_line;
    int m_length = 0;
};
