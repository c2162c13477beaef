#pragma once

#include <QtGlobal>
#include <string>

namespace sim
{
/// Two upper-case digits.
inline std::string hex(quint8 byte)
{
    static const char digits[] = "0123456789ABCDEF";
    return {digits[byte >> 4], digits[byte & 15]};
}
} // namespace sim
