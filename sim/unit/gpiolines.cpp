#include "gpiolines.h"

#include "ioctlrecord.h"

#include <cstring>
#include <string>
#include <utility>

namespace sim
{
GpioLines::GpioLines(WireObserver observer)
    : m_observer(std::move(observer))
{
}

void GpioLines::feed(const uint8_t *bytes, size_t n, int64_t nowUs)
{
    for (size_t i = 0; i < n; ++i) {
        m_record.push_back(bytes[i]);
        if (m_record.size() == sizeof(IoctlRecord)) {
            takeRecord(nowUs);
            m_record.clear();
        }
    }
}

int GpioLines::level(int line) const
{
    return line >= 0 && line < static_cast<int>(m_levels.size()) ? m_levels[static_cast<size_t>(line)] : -1;
}

void GpioLines::takeRecord(int64_t nowUs)
{
    IoctlRecord record;
    memcpy(&record, m_record.data(), sizeof record);
    WireEvent event;
    if (record.size == sizeof record && record.request <= 1 && record.argument < m_levels.size()) {
        const LineWrite write{record.timeUs, static_cast<int>(record.argument),
                              static_cast<int>(record.request)};
        m_levels[record.argument] = write.level;
        m_history.add(write);
        event = write;
    } else {
        const WireFault fault{nowUs, "a GPIO request of " + std::to_string(record.size) + " bytes for line " +
                                         std::to_string(record.argument) + ", level " +
                                         std::to_string(record.request)};
        m_faults.add(fault);
        event = fault;
    }
    if (m_observer) {
        m_observer(event);
    }
}
} // namespace sim
