#include "lcdframe.h"

namespace
{
constexpr std::uint8_t InstructionSync = 0xF8;
constexpr std::uint8_t DataSync = 0xFA;
constexpr std::uint8_t SetAddress = 0x80; ///< given twice: vertical, then horizontal

std::uint8_t *putSplit(std::uint8_t *target, std::uint8_t byte)
{
    *target++ = byte & 0xF0;
    *target++ = static_cast<std::uint8_t>(byte << 4);
    return target;
}

/// Eight dots side by side; compilers map it to the machine's vector registers.
typedef std::uint16_t Dots __attribute__((vector_size(16)));
constexpr Dots Weights = {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01};

/// The bit of each of eight dots in a byte of the frame, if it is lit; else 0.
__attribute__((no_sanitize("thread"))) Dots litBits(const std::uint16_t *dots)
{
    Dots eight;
    __builtin_memcpy(&eight, dots, sizeof eight);
    return reinterpret_cast<Dots>(eight == 0) & Weights;
}
} // namespace

namespace LcdFrame
{
// The frame memory is shared without a lock (see framememory.h), hence no report by the thread sanitizer.
__attribute__((no_sanitize("thread"))) void pack(const std::uint16_t *dots, Rows &rows)
{
    constexpr std::uint64_t SumOfLanes = 0x0001000100010001;
    std::uint8_t *target = rows[0];
    for (int dot = 0; dot < LCD_XSIZE * LCD_YSIZE; dot += 16) {
        // Two bytes at a time, the second in the upper halves of the lanes. No bit is there twice, so that
        // the sum of all lanes, which the product has in its upper 16 bits, is free of carries.
        const Dots lit = litBits(dots + dot) | litBits(dots + dot + 8) << 8;
        std::uint64_t lanes[2];
        __builtin_memcpy(lanes, &lit, sizeof lanes);
        const std::uint64_t bytes = ((lanes[0] | lanes[1]) * SumOfLanes) >> 48;
        *target++ = static_cast<std::uint8_t>(bytes);
        *target++ = static_cast<std::uint8_t>(bytes >> 8);
    }
}

Instruction instruction(std::uint8_t code)
{
    Instruction transfer = {InstructionSync};
    putSplit(&transfer[1], code);
    return transfer;
}

AddressTransfer address(int line)
{
    AddressTransfer transfer = {InstructionSync};
    std::uint8_t *next = putSplit(&transfer[1], static_cast<std::uint8_t>(SetAddress | line));
    putSplit(next, SetAddress);
    return transfer;
}

DataTransfer data(const Rows &rows, int line)
{
    DataTransfer transfer = {DataSync};
    std::uint8_t *next = &transfer[1];
    for (const int row : {line, line + Lines}) {
        for (const std::uint8_t byte : rows[row]) {
            next = putSplit(next, byte);
        }
    }
    return transfer;
}
} // namespace LcdFrame
