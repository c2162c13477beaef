#include "lcdframe.h"

#include <cstring>
#include <utility>

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

constexpr int DotsPerByte = 8;

// A row is packed in two steps, which compilers map to the machine's vector registers. First its bytes lie
// across: eight lanes of 16 bits, four in a word from its low end on, where lane j has dot j of all 16 bytes.
// Then three exchanges, each of one bit of a lane's number for one of the place in the lane, leave the dots
// of a byte side by side, the leftmost in bit 7.
//
// The frame memory is shared without a lock (see framememory.h), hence no report by the thread sanitizer.

/// The place in the lanes from which the exchanges take a byte's dots to the byte.
constexpr int laneBit(int byte)
{
    return (LcdFrame::RowBytes - 1 - byte) / 2 + byte % 2 * DotsPerByte;
}

/// A lane's bits of `Count` bytes from `First` on; `row` begins with the lane's dot of the first byte of all.
template <int First, int Count>
__attribute__((no_sanitize("thread"))) inline std::uint16_t litBits(const std::uint16_t *row)
{
    if constexpr (Count == 1) {
        return row[DotsPerByte * First] == 0 ? 1 << laneBit(First) : 0;
    } else {
        return litBits<First, Count / 2>(row) | litBits<First + Count / 2, Count / 2>(row);
    }
}

/// Exchanges the bits of `low` in `mask` with those of `high` that are `distance` above them. Both may be the
/// same word.
void exchange(std::uint64_t &low, std::uint64_t &high, std::uint64_t mask, int distance)
{
    const std::uint64_t differing = ((high >> distance) ^ low) & mask;
    low ^= differing;
    high ^= differing << distance;
}
} // namespace

namespace LcdFrame
{
__attribute__((no_sanitize("thread"))) void pack(const std::uint16_t *dots, Rows &rows)
{
    std::uint64_t left[LCD_YSIZE];
    std::uint64_t right[LCD_YSIZE];
    for (int y = 0; y < LCD_YSIZE; ++y) {
        std::uint16_t lanes[DotsPerByte];
        for (int dot = 0; dot < DotsPerByte; ++dot) {
            lanes[dot] = litBits<0, RowBytes>(dots + LCD_XSIZE * y + dot);
        }
        std::memcpy(&left[y], lanes, sizeof left[y]);
        std::memcpy(&right[y], lanes + DotsPerByte / 2, sizeof right[y]);
    }
    for (int y = 0; y < LCD_YSIZE; ++y) {
        exchange(left[y], right[y], 0x0F0F0F0F0F0F0F0F, 4);
        exchange(left[y], left[y], 0x0000000033333333, 34);
        exchange(right[y], right[y], 0x0000000033333333, 34);
        exchange(left[y], left[y], 0x0000555500005555, 17);
        exchange(right[y], right[y], 0x0000555500005555, 17);
        std::memcpy(rows[y], &left[y], sizeof left[y]);
        std::memcpy(rows[y] + RowBytes / 2, &right[y], sizeof right[y]);
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
