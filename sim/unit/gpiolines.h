#pragma once

#include "history.h"
#include "wireevents.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace sim
{
/// The GPIO lines behind the character device: level as the request, line as the argument, in the records
/// that the ioctl interposer writes. Not for several threads at once. A copy is a snapshot.
class GpioLines
{
public:
    explicit GpioLines(WireObserver observer = {});

    /// Takes bytes off the device, read at `nowUs`; a record may come in pieces.
    void feed(const uint8_t *bytes, size_t n, int64_t nowUs);

    /// 0 or 1; lines are low at first. -1 when there is no such line (0..31).
    int level(int line) const;

    std::vector<LineWrite> history() const { return m_history.items(); }
    std::vector<WireFault> faults() const { return m_faults.items(); }

private:
    void takeRecord(int64_t nowUs);

    WireObserver m_observer;
    std::vector<uint8_t> m_record; ///< what has come of the record that is being received
    std::array<int, 32> m_levels{};
    History<LineWrite> m_history;
    History<WireFault> m_faults;
};
} // namespace sim
