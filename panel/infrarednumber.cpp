#include "infrarednumber.h"

namespace
{
constexpr int MaxDigits = 16;
}

void InfraredNumber::add(char digit)
{
    if (m_digits == MaxDigits) {
        take();
    }
    m_number = m_number * 10 + (digit - '0');
    ++m_digits;
}

std::int64_t InfraredNumber::take()
{
    const std::int64_t number = m_number;
    m_number = 0;
    m_digits = 0;
    return number;
}
