#pragma once

#include "history.h"
#include "wireevents.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace sim
{
/// The LEDs of the front panel's board, one behind each of the keys 1..40, 51..90 and 111..116. An LED byte:
///
///   00      all LEDs off
///   key     its LED off
///   80|key  its LED on
///
/// A byte for another key is a recorded fault, and so is 80 alone. Not for several threads at once. A copy is
/// a snapshot.
class KeyPanel
{
public:
    explicit KeyPanel(WireObserver observer = {});

    /// Takes bytes off the link, read at `nowUs`.
    void feed(const uint8_t *bytes, size_t n, int64_t nowUs);

    /// False for a key that is not there; all LEDs are off at first.
    bool isLit(int key) const;

    /// How many bytes have come, good or bad.
    uint64_t byteCount() const { return m_byteCount; }

    std::vector<WireFault> faults() const { return m_faults.items(); }

private:
    void take(uint8_t byte, int64_t nowUs);

    WireObserver m_observer;
    std::bitset<128> m_lit;
    uint64_t m_byteCount = 0;
    History<WireFault> m_faults;
};
} // namespace sim
