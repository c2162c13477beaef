#pragma once

#include "lcdsize.h"

#include <array>
#include <cstdint>

/// Frames and instructions of the LCD controller (ST7920 class) on its serial interface.
///
/// A transfer is a synchronisation byte, F8 for instructions or FA for display data, and then two bytes for
/// each byte b of the payload: b & F0 and (b << 4) & F0. Graphic memory is 32 lines of 256 dots: line y holds
/// display row y in its first 16 bytes and row y + 32 in the next 16.
namespace LcdFrame
{
constexpr int Lines = LCD_YSIZE / 2;
constexpr int RowBytes = LCD_XSIZE / 8;

/// One bit per dot, 1 is lit; the leftmost dot of a byte is in bit 7.
using Rows = std::uint8_t[LCD_YSIZE][RowBytes];

using Instruction = std::array<std::uint8_t, 3>;
using AddressTransfer = std::array<std::uint8_t, 5>;
using DataTransfer = std::array<std::uint8_t, 1 + 2 * 2 * RowBytes>;

/// Packs the frame memory, `LCD_XSIZE` x `LCD_YSIZE` values that another thread may be writing: value 0 is
/// lit, every other one dark.
void pack(const std::uint16_t *dots, Rows &rows);

Instruction instruction(std::uint8_t code);
/// Sets the address to the beginning of a line, 0 to `Lines` - 1.
AddressTransfer address(int line);
/// A line's content.
DataTransfer data(const Rows &rows, int line);
} // namespace LcdFrame
