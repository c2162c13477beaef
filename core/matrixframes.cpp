#include "matrixframes.h"

#include <cstring>

SwitchFrame::SwitchFrame(const quint16 *inputs, int ports)
{
    static const char digits[] = "0123456789ABCDEF";
    static const char prefix[] = {'F', '0', '0', 'C', '0', '0', '0', '0'};
    std::memcpy(m_bytes, prefix, sizeof prefix);
    unsigned char *next = m_bytes + sizeof prefix;
    for (int o = 0; o < ports; ++o) {
        for (int shift = 12; shift >= 0; shift -= 4) {
            *next++ = static_cast<unsigned char>(digits[(inputs[o] >> shift) & 0xF]);
        }
    }
    *next++ = '\r';
    *next++ = '\n';
    m_size = static_cast<int>(next - m_bytes);
}

SpliceFrame::SpliceFrame(const MxShm &shm)
{
    const int ports = portCount(shm);
    m_size = 6 + 4 * ports + 1;
    const unsigned char header[] = {
        0xEB, 0x90, static_cast<unsigned char>(m_size >> 8), static_cast<unsigned char>(m_size & 0xFF),
        0x00, 0x31};
    std::memcpy(m_bytes, header, sizeof header);
    unsigned char *next = m_bytes + sizeof header;
    for (int o = 0; o < ports; ++o) {
        const quint32 word = shm.spliceData[o];
        for (int shift = 0; shift < 32; shift += 8) {
            *next++ = static_cast<unsigned char>(word >> shift);
        }
    }
    *next = 0x00;
}
