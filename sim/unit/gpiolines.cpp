#include "gpiolines.h"

#include "ioctlrecord.h"

#include <cstring>
#include <string>
#include <utility>

namespace sim
{
GpioLines::GpioLines(WireObserver observer)
    : FarEnd(std::move(observer))
{
}

void GpioLines::feed(const quint8 *bytes, std::size_t size, qint64 nowUs)
{
    for (std::size_t i = 0; i < size; ++i) {
        m_record.push_back(bytes[i]);
        if (m_record.size() == sizeof(IoctlRecord)) {
            takeRecord(nowUs);
            m_record.clear();
        }
    }
}

int GpioLines::level(int line) const
{
    return line >= 0 && line < static_cast<int>(m_levels.size()) ? m_levels[static_cast<std::size_t>(line)]
                                                                 : -1;
}

void GpioLines::takeRecord(qint64 nowUs)
{
    IoctlRecord record;
    std::memcpy(&record, m_record.data(), sizeof record);
    if (record.size != sizeof record || record.request > 1 || record.argument >= m_levels.size()) {
        fault(nowUs, "a GPIO request of " + std::to_string(record.size) + " bytes for line " +
                         std::to_string(record.argument) + ", level " + std::to_string(record.request));
        return;
    }
    const LineWrite write{record.timeUs, static_cast<int>(record.argument), static_cast<int>(record.request)};
    m_levels[record.argument] = write.level;
    m_history.add(write);
    tell(write);
}
} // namespace sim
