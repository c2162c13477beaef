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

const unsigned char SpliceFrame::endMark = 0x00;

SpliceFrame::SpliceFrame(const MxShm &shm)
    : wordsSize(4 * portCount(shm))
{
    const int total = HeaderSize + wordsSize + 1;
    const unsigned char start[HeaderSize] = {
        0xEB, 0x90, static_cast<unsigned char>(total >> 8), static_cast<unsigned char>(total & 0xFF),
        0x00, 0x31};
    std::memcpy(header, start, sizeof header);
    for (int o = 0; o < wordsSize / 4; ++o) {
        words[o] = shm.spliceData[o];
    }
}
