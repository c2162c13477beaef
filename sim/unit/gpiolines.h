#pragma once

#include "farend.h"

#include <array>

namespace sim
{
/// The GPIO lines behind the character device: level as the request, line as the argument, in the records
/// that the ioctl interposer writes.
class GpioLines : public FarEnd
{
public:
    explicit GpioLines(WireObserver observer = {});

    void feed(const quint8 *bytes, std::size_t size, qint64 nowUs) override;

    /// 0 or 1; lines are low at first. -1 when there is no such line (0..31).
    int level(int line) const;

    std::vector<LineWrite> history() const { return m_history.items(); }

private:
    void takeRecord(qint64 nowUs);

    std::vector<quint8> m_record; ///< what has come of the record that is being received
    std::array<int, 32> m_levels{};
    History<LineWrite> m_history;
};
} // namespace sim
