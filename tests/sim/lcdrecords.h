#pragma once

#include "ioctlrecord.h"

#include <QByteArray>
#include <linux/spi/spidev.h>

// Requests of a program that drives the LCD, as the interposer writes them; their argument is 1.

inline QByteArray lcdRecord(unsigned long request, const QByteArray &payload)
{
    const IoctlRecord head{uint32_t(sizeof(IoctlRecord)) + uint32_t(payload.size()), uint32_t(request), 1, 0};
    return QByteArray(reinterpret_cast<const char *>(&head), sizeof head) + payload;
}

/// The request on the GPIO device that takes it out of reset.
inline QByteArray lcdOutOfReset()
{
    return lcdRecord(1, {});
}

/// A transfer; the bytes in hexadecimal.
inline QByteArray lcdTransfer(const QByteArray &hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    spi_ioc_transfer transfer = {};
    transfer.tx_buf = 1;
    transfer.delay_usecs = 72;
    transfer.len = uint32_t(bytes.size());
    return lcdRecord(SPI_IOC_MESSAGE(1),
                     QByteArray(reinterpret_cast<const char *>(&transfer), sizeof transfer) + bytes);
}

/// Turns it on, so that its dots show noise.
inline QByteArray lcdOn()
{
    return lcdRecord(SPI_IOC_WR_MODE, QByteArray("\x07")) +
           lcdRecord(SPI_IOC_WR_MAX_SPEED_HZ, QByteArray("\x40\x42\x0F\x00", 4)) + lcdTransfer("F83060");
}

/// Then has these dots in the upper left corner: eight in the first row, the leftmost in bit 7.
inline QByteArray lcdCorner(uint8_t dots)
{
    const QByteArray halves{QByteArray(1, char(dots & 0xF0)) + QByteArray(1, char(uint8_t(dots << 4)))};
    return lcdTransfer("F880008000") + lcdTransfer("FA" + halves.toHex() + "0000");
}
