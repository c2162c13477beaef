#include "keypanel.h"

#include <string>
#include <utility>

namespace sim
{
namespace
{
constexpr int MaxKey = 127;
constexpr int Down = 0x80;
constexpr int Up = 0;

bool hasLed(int key)
{
    return (key >= 1 && key <= 40) || (key >= 51 && key <= 90) || (key >= 111 && key <= 116);
}
} // namespace

KeyPanel::KeyPanel(WireObserver observer)
    : FarEnd(std::move(observer))
{
}

void KeyPanel::feed(const quint8 *bytes, std::size_t size, qint64 nowUs)
{
    for (std::size_t i = 0; i < size; ++i) {
        take(bytes[i], nowUs);
    }
    m_byteCount += size;
}

void KeyPanel::press(int key)
{
    sendKey(key, Down);
}

void KeyPanel::release(int key)
{
    sendKey(key, Up);
}

bool KeyPanel::isLit(int key) const
{
    return key >= 0 && key <= MaxKey && m_lit[static_cast<std::size_t>(key)];
}

void KeyPanel::take(quint8 byte, qint64 nowUs)
{
    const int key = byte & 0x7F;
    if (byte == 0) {
        m_lit.reset();
    } else if (hasLed(key)) {
        m_lit[static_cast<std::size_t>(key)] = byte & 0x80;
    } else {
        fault(nowUs, "an LED byte for key " + std::to_string(key) + ", which has none");
    }
}

void KeyPanel::sendKey(int key, int direction)
{
    if (key >= 1 && key <= MaxKey) {
        send({static_cast<char>(key | direction)});
    }
}
} // namespace sim
