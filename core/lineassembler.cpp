#include "lineassembler.h"

#include "commandtext.h"

bool LineAssembler::feed(char byte)
{
    if (CommandText::is(byte, CommandText::CommandEnd)) {
        m_line[m_size] = '\0';
        m_complete = m_size;
        m_size = 0;
        return true;
    }
    m_line[m_size] = byte;
    m_size = m_size + 1 < Capacity ? static_cast<quint16>(m_size + 1) : quint16(0);
    return false;
}
