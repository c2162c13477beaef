#pragma once

#include <cstdint>
#include <string>

namespace sim
{
/// Two upper-case digits.
inline std::string hex(uint8_t byte)
{
    static const char digits[] = "0123456789ABCDEF";
    return {digits[byte >> 4], digits[byte & 15]};
}
} // namespace sim
