#pragma once

#include <stdint.h>

/* Head of one ioctl request as the interposer writes it into a device's FIFO; byte order of the machine.
 *
 *   request                     what follows the head
 *   0 or 1 (GPIO)               nothing: the request is the level, the argument the line
 *   spidev setting, written     the value that the argument points to, _IOC_SIZE bytes
 *   SPI_IOC_MESSAGE(n)          per transfer: its struct spi_ioc_transfer, then its tx bytes, if any
 *   spidev setting, read        nothing: the caller's variable stays as it is
 */
struct IoctlRecord {
    uint32_t size; /* of the whole record, this head included */
    uint32_t request;
    uint64_t argument;
    int64_t timeUs; /* CLOCK_MONOTONIC; puts the requests for different devices in order */
};
