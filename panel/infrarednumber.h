#pragma once

#include <cstdint>

/// The number that is being typed on the infrared remote, up to 16 digits.
class InfraredNumber
{
public:
    /// Takes a digit "0" to "9"; a 17th one begins a new number.
    void add(char digit);
    /// Forgets the digits. \return the number that they were, 0 when there were none
    std::int64_t take();

private:
    std::int64_t m_number = 0;
    int m_digits = 0;
};
