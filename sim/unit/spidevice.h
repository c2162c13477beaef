#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct spi_ioc_transfer;
struct IoctlRecord;

namespace sim
{
/// What came over the bus while the chip was selected, or why it could not come over.
struct SpiTransfer {
    int64_t timeUs; ///< of the request, as CLOCK_MONOTONIC
    std::vector<uint8_t> bytes;
    std::string fault; ///< in words; empty when all is as the LCD needs it
};

/// The SPI bus of the LCD as spidev drives it, in the records that the ioctl interposer writes. The LCD needs
/// polarity 1, phase 1, an active-high chip select, words of 8 bits, a clock of 1 Hz to 2.5 MHz, and messages
/// of one transfer that only sends and leaves it at least 72 us, its time for an instruction. Not for several
/// threads at once. A copy is a snapshot.
class SpiDevice
{
public:
    /// Takes bytes off the device, and returns what they complete, in order; a record may come in pieces.
    /// What cannot be a record is dropped together with all that came with it.
    std::vector<SpiTransfer> feed(const uint8_t *bytes, size_t n);

private:
    template <class T>
    T at(size_t offset) const;

    void takeRecord(const IoctlRecord &head, std::vector<SpiTransfer> *taken);
    SpiTransfer takeMessage(const IoctlRecord &head) const;
    std::string faultOf(const spi_ioc_transfer &transfer) const;

    std::vector<uint8_t> m_record; ///< what has come of the record that is being received
    uint32_t m_mode = 0;
    uint32_t m_bitsPerWord = 0; ///< 0 is 8
    uint32_t m_speedHz = 0;
};
} // namespace sim
