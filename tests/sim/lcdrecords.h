#pragma once

#include "ioctlrecord.h"

#include <QByteArray>
#include <linux/spi/spidev.h>

// Requests of a program that drives the LCD, as the interposer writes them; their argument is 1.

template <class T>
QByteArray bytesOf(const T &what)
{
    return QByteArray(reinterpret_cast<const char *>(&what), sizeof what);
}

inline QByteArray lcdRecord(unsigned long request, const QByteArray &payload, int64_t timeUs = 0)
{
    const auto size = uint32_t(sizeof(IoctlRecord)) + uint32_t(payload.size());
    return bytesOf(IoctlRecord{size, uint32_t(request), 1, timeUs}) + payload;
}

/// A transfer that leaves the LCD the time that it needs.
inline spi_ioc_transfer lcdTransfer()
{
    spi_ioc_transfer transfer = {};
    transfer.tx_buf = 1;
    transfer.delay_usecs = 72;
    return transfer;
}

inline QByteArray lcdMessage(const QByteArray &bytes, int64_t timeUs = 0,
                             spi_ioc_transfer transfer = lcdTransfer())
{
    transfer.len = uint32_t(bytes.size());
    return lcdRecord(SPI_IOC_MESSAGE(1), bytesOf(transfer) + bytes, timeUs);
}

/// As the wire has it: the synchronisation byte, then each byte in halves. All in hexadecimal.
inline QByteArray lcdWire(const QByteArray &sync, const QByteArray &bytes)
{
    QByteArray wire = QByteArray::fromHex(sync);
    for (const char byte : QByteArray::fromHex(bytes)) {
        wire += char(byte & 0xF0);
        wire += char(uint8_t(byte) << 4);
    }
    return wire;
}

/// How the bus is set up, at the highest clock.
inline QByteArray lcdBus()
{
    return lcdRecord(SPI_IOC_WR_MODE, "\x07") +
           lcdRecord(SPI_IOC_WR_MAX_SPEED_HZ, bytesOf(uint32_t(2500000)));
}

/// Turns it on, so that its dots show noise.
inline QByteArray lcdOn()
{
    return lcdBus() + lcdMessage(lcdWire("F8", "36"));
}

/// Then has these dots in the upper left corner: eight in the first row, the leftmost in bit 7.
inline QByteArray lcdCorner(uint8_t dots)
{
    return lcdMessage(lcdWire("F8", "8080")) + lcdMessage(lcdWire("FA", bytesOf(dots).toHex() + "00"));
}
