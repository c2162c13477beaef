#include "framedecoder.h"

bool FrameDecoder::feed(quint8 byte)
{
    static constexpr quint8 start[] = {0xEB, 0x90};
    if (m_size < 2 && byte != start[m_size]) {
        m_size = 0;
        return false;
    }
    m_frame[m_size++] = byte;
    if (m_size < 4) {
        return false;
    }
    if (m_size == 4) {
        m_length = static_cast<quint16>(m_frame[2] << 8 | m_frame[3]);
        if (m_length > Capacity) {
            m_size = 0;
        }
        return false;
    }
    if (m_size < m_length) {
        return false;
    }
    m_size = 0;
    return m_length > 0 && m_frame[m_length - 1] == 0;
}
