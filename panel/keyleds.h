#pragma once

#include <cstdint>
#include <functional>
#include <utility>

/// Takes LED bytes for the key board.
using LedWriter = std::function<void(const std::uint8_t *bytes, int n)>;

constexpr std::uint8_t AllLedsOff = 0x00;

/// Switches the LED of a key (1 to 127).
constexpr std::uint8_t ledByte(int key, bool isOn)
{
    return static_cast<std::uint8_t>(isOn ? 0x80 | key : key);
}

/// The LEDs of the key board. Pages that light any send them again and again, so that a board that was
/// plugged in late shows them as well.
class KeyLeds
{
public:
    explicit KeyLeds(LedWriter writer)
        : m_writer(std::move(writer))
    {
    }

    void send(const std::uint8_t *bytes, int n) { m_writer(bytes, n); }
    void allOff() { send(&AllLedsOff, 1); }

    /// Counts a cycle. \return true in the first cycle, and then whenever `cycles` have gone by since it was
    /// last true
    bool isDue(int cycles)
    {
        if (++m_cycles < cycles) {
            return false;
        }
        m_cycles = 0;
        return true;
    }

private:
    LedWriter m_writer;
    int m_cycles = 100;
};
