#pragma once

#include <QtGlobal>
#include <cstddef>
#include <string>
#include <vector>

struct spi_ioc_transfer;
struct IoctlRecord;

namespace sim
{
/// What came over the bus while the chip was selected, or why it could not come over.
struct SpiTransfer {
    qint64 timeUs; ///< of the request, as CLOCK_MONOTONIC
    std::vector<quint8> bytes;
    std::string fault; ///< in words; empty when all is as the LCD needs it
};

/// The SPI bus of the LCD as spidev drives it, in the records that the ioctl interposer writes. The LCD needs
/// polarity 1, phase 1, an active-high chip select, words of 8 bits, a clock of 1 Hz to 2.5 MHz, and messages
/// of one transfer that only sends and leaves it at least 72 us, its time for an instruction. Not for several
/// threads at once. A copy is a snapshot.
class SpiDevice
{
public:
    /// Takes bytes off the device; a record may come in pieces. What cannot be a record is dropped together
    /// with all that came with it. \return what the bytes complete, in order
    std::vector<SpiTransfer> feed(const quint8 *bytes, std::size_t size);

private:
    template <class T>
    T at(std::size_t offset) const;

    void takeRecord(const IoctlRecord &head, std::vector<SpiTransfer> *taken);
    SpiTransfer takeMessage(const IoctlRecord &head) const;
    std::string faultOf(const spi_ioc_transfer &transfer) const;

    std::vector<quint8> m_record; ///< what has come of the record that is being received
    quint32 m_mode = 0;
    quint32 m_bitsPerWord = 0; ///< 0 is 8
    quint32 m_speedHz = 0;
};
} // namespace sim
