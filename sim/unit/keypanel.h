#pragma once

#include "farend.h"

#include <bitset>

namespace sim
{
/// The front panel's board: keys that send a byte, and LEDs, one behind each of the keys 1..40, 51..90 and
/// 111..116.
///
///   from the board       80|key  it went down
///                        key     it went up
///   LED byte to it       00      all LEDs off
///                        key     its LED off
///                        80|key  its LED on
///
/// An LED byte for another key is a recorded fault, and so is 80 alone.
class KeyPanel : public FarEnd
{
public:
    explicit KeyPanel(WireObserver observer = {});

    void feed(const quint8 *bytes, std::size_t size, qint64 nowUs) override;

    /// A key goes down, or up; a number that is not 1..127 does nothing.
    void press(int key);
    void release(int key);

    /// False for a key that is not there; all LEDs are off at first.
    bool isLit(int key) const;

    /// How many bytes have come, good or bad.
    quint64 byteCount() const { return m_byteCount; }

private:
    void take(quint8 byte, qint64 nowUs);
    void sendKey(int key, int direction);

    std::bitset<128> m_lit;
    quint64 m_byteCount = 0;
};
} // namespace sim
