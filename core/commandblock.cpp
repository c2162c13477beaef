#include "commandblock.h"

#include "commandtext.h"

using CommandText::endsNetworkCommand;

CommandBlock::CommandBlock(const char *bytes, int size, End end)
    : m_begin(bytes)
    , m_end(bytes + size)
    , m_endMeans(end)
    , m_next(bytes)
    , m_line(bytes)
{
}

bool CommandBlock::next()
{
    const char *at = m_next;
    while (at != m_end && endsNetworkCommand(*at)) {
        ++at;
    }
    m_next = m_line = at;
    while (at != m_end && !endsNetworkCommand(*at)) {
        ++at;
    }
    m_length = static_cast<int>(at - m_line);
    if (m_length == 0 || (at == m_end && m_endMeans == Open)) {
        return false;
    }
    m_next = at == m_end ? at : at + 1;
    return true;
}
