#include "spidevice.h"

#include "ioctlrecord.h"

#include <cstring>
#include <linux/spi/spidev.h>

namespace sim
{
namespace
{
constexpr std::size_t MaxRecordSize = 1 << 16;
constexpr quint32 NeededMode = SPI_MODE_3 | SPI_CS_HIGH;
constexpr quint32 MaxSpeedHz = 2'500'000;
constexpr quint32 InstructionUs = 72;

bool isMessage(quint32 request)
{
    return _IOC_TYPE(request) == SPI_IOC_MAGIC && _IOC_NR(request) == 0 && _IOC_DIR(request) == _IOC_WRITE;
}

bool isReading(quint32 request)
{
    return _IOC_TYPE(request) == SPI_IOC_MAGIC && _IOC_DIR(request) == _IOC_READ;
}
} // namespace

std::vector<SpiTransfer> SpiDevice::feed(const quint8 *bytes, std::size_t size)
{
    std::vector<SpiTransfer> taken;
    for (std::size_t i = 0; i < size; ++i) {
        m_record.push_back(bytes[i]);
        if (m_record.size() < sizeof(IoctlRecord)) {
            continue;
        }
        const auto head = at<IoctlRecord>(0);
        if (head.size < sizeof head || head.size > MaxRecordSize) {
            taken.push_back({0, {}, "an SPI request of " + std::to_string(head.size) + " bytes"});
            m_record.clear();
            break;
        }
        if (m_record.size() == head.size) {
            takeRecord(head, &taken);
            m_record.clear();
        }
    }
    return taken;
}

/// All zero when the record is too short for it.
template <class T>
T SpiDevice::at(std::size_t offset) const
{
    T value{};
    if (offset + sizeof value <= m_record.size()) {
        std::memcpy(&value, m_record.data() + offset, sizeof value);
    }
    return value;
}

void SpiDevice::takeRecord(const IoctlRecord &head, std::vector<SpiTransfer> *taken)
{
    switch (head.request) {
    case SPI_IOC_WR_MODE:
        m_mode = at<quint8>(sizeof head);
        return;
    case SPI_IOC_WR_MODE32:
        m_mode = at<quint32>(sizeof head);
        return;
    case SPI_IOC_WR_BITS_PER_WORD:
        m_bitsPerWord = at<quint8>(sizeof head);
        return;
    case SPI_IOC_WR_MAX_SPEED_HZ:
        m_speedHz = at<quint32>(sizeof head);
        return;
    default:
        break;
    }
    if (isMessage(head.request)) {
        taken->push_back(takeMessage(head));
    } else if (!isReading(head.request)) {
        taken->push_back({head.timeUs, {}, "an unknown SPI request " + std::to_string(head.request)});
    }
}

SpiTransfer SpiDevice::takeMessage(const IoctlRecord &head) const
{
    constexpr std::size_t overhead = sizeof head + sizeof(spi_ioc_transfer);
    const std::size_t transfers = _IOC_SIZE(head.request) / sizeof(spi_ioc_transfer);
    const auto transfer = at<spi_ioc_transfer>(sizeof head);
    if (transfers != 1) {
        return {head.timeUs, {}, "an SPI message of " + std::to_string(transfers) + " transfers"};
    }
    if (!transfer.tx_buf || head.size != overhead + transfer.len) {
        return {head.timeUs, {}, "an SPI transfer that sends nothing"};
    }
    return {head.timeUs, {m_record.begin() + overhead, m_record.end()}, faultOf(transfer)};
}

std::string SpiDevice::faultOf(const spi_ioc_transfer &transfer) const
{
    const quint32 speedHz = transfer.speed_hz ? transfer.speed_hz : m_speedHz;
    const quint32 bits = transfer.bits_per_word ? transfer.bits_per_word : m_bitsPerWord;
    if (transfer.rx_buf) {
        return "an SPI transfer that reads";
    }
    if (m_mode != NeededMode) {
        return "an SPI transfer in mode " + std::to_string(m_mode);
    }
    if (bits != 0 && bits != 8) {
        return "an SPI transfer in words of " + std::to_string(bits) + " bits";
    }
    if (speedHz == 0 || speedHz > MaxSpeedHz) {
        return "an SPI transfer at " + std::to_string(speedHz) + " Hz";
    }
    if (transfer.delay_usecs < InstructionUs) {
        return "an SPI transfer that leaves " + std::to_string(transfer.delay_usecs) + " us";
    }
    return {};
}
} // namespace sim
