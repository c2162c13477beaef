#include "commandblock.h"

#include "commandtext.h"

#include <utility>

CommandBlock::CommandBlock(QByteArray bytes)
    : m_bytes(std::move(bytes))
{
    m_bytes.truncate(MaxSize);
    for (char &c : m_bytes) {
        c = c == '\n' || CommandText::endsCommand(c) ? '.' : CommandText::lowerCase(c);
    }
}

bool CommandBlock::next()
{
    char *const bytes = m_bytes.data();
    const int size = m_bytes.size();
    // The NUL that ended the present line stands where its terminator stood.
    m_start = m_end == 0 ? 0 : m_end + 1;
    while (m_start < size && bytes[m_start] == '.') {
        ++m_start;
    }
    if (m_start >= size) {
        m_start = m_end = size;
        return false;
    }
    m_end = m_start;
    while (m_end < size && bytes[m_end] != '.') {
        ++m_end;
    }
    bytes[m_end] = '\0';
    return true;
}
