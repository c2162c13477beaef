#include "keypanel.h"

#include <string>
#include <utility>

namespace sim
{
namespace
{
bool hasLed(int key)
{
    return (key >= 1 && key <= 40) || (key >= 51 && key <= 90) || (key >= 111 && key <= 116);
}
} // namespace

KeyPanel::KeyPanel(WireObserver observer)
    : m_observer(std::move(observer))
{
}

void KeyPanel::feed(const uint8_t *bytes, size_t n, int64_t nowUs)
{
    for (size_t i = 0; i < n; ++i) {
        take(bytes[i], nowUs);
    }
    m_byteCount += n;
}

bool KeyPanel::isLit(int key) const
{
    return key >= 0 && key < static_cast<int>(m_lit.size()) && m_lit[static_cast<size_t>(key)];
}

void KeyPanel::take(uint8_t byte, int64_t nowUs)
{
    const int key = byte & 0x7F;
    if (byte == 0) {
        m_lit.reset();
    } else if (hasLed(key)) {
        m_lit[static_cast<size_t>(key)] = byte & 0x80;
    } else {
        const WireFault fault{nowUs, "an LED byte for key " + std::to_string(key) + ", which has none"};
        m_faults.add(fault);
        if (m_observer) {
            m_observer(fault);
        }
    }
}
} // namespace sim
