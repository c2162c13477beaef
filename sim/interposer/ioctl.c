/* Takes the place of the C library's ioctl(). A device that is a FIFO gets its GPIO and SPI requests as
 * records (see ioctlrecord.h); everything else goes to the kernel. */
#define _GNU_SOURCE
#include "ioctlrecord.h"

#include <errno.h>
#include <linux/spi/spidev.h>
#include <stdarg.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

enum { MaxTransfers = 511, MaxParts = 1 + 2 * MaxTransfers }; /* what _IOC_SIZE can count */

static int isFifo(int fd)
{
    struct stat status;
    return fstat(fd, &status) == 0 && S_ISFIFO(status.st_mode);
}

static int isSpiMessage(unsigned long request)
{
    return _IOC_NR(request) == 0 && _IOC_DIR(request) == _IOC_WRITE;
}

/* Adds what lies behind a spidev argument to the parts of the record; returns their new number. */
static int addPayload(struct iovec *parts, int count, unsigned long request, void *argument)
{
    if (!argument || _IOC_DIR(request) != _IOC_WRITE)
        return count;
    if (!isSpiMessage(request)) {
        parts[count++] = (struct iovec){argument, _IOC_SIZE(request)};
        return count;
    }
    struct spi_ioc_transfer *transfers = argument;
    for (size_t i = 0; i < _IOC_SIZE(request) / sizeof *transfers; ++i) {
        parts[count++] = (struct iovec){&transfers[i], sizeof *transfers};
        if (transfers[i].tx_buf)
            parts[count++] = (struct iovec){(void *)(uintptr_t)transfers[i].tx_buf, transfers[i].len};
    }
    return count;
}

/* A message returns the bytes that its transfers moved, whether or not they had a tx buffer. */
static int result(unsigned long request, const struct spi_ioc_transfer *transfers)
{
    int bytes = 0;
    if (transfers && _IOC_TYPE(request) == SPI_IOC_MAGIC && isSpiMessage(request))
        for (size_t i = 0; i < _IOC_SIZE(request) / sizeof *transfers; ++i)
            bytes += (int)transfers[i].len;
    return bytes;
}

static int record(int fd, unsigned long request, void *argument)
{
    struct IoctlRecord head = {sizeof head, (uint32_t)request, (uintptr_t)argument};
    struct iovec parts[MaxParts];
    parts[0] = (struct iovec){&head, sizeof head};
    const int count = _IOC_TYPE(request) == SPI_IOC_MAGIC ? addPayload(parts, 1, request, argument) : 1;
    for (int i = 1; i < count; ++i)
        head.size += (uint32_t)parts[i].iov_len;

    const ssize_t written = writev(fd, parts, count);
    if (written == (ssize_t)head.size)
        return result(request, argument);
    if (written >= 0)
        errno = EIO; /* cut off by a signal */
    return -1;
}

int ioctl(int fd, unsigned long request, ...)
{
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);

    const int known = request <= 1 || _IOC_TYPE(request) == SPI_IOC_MAGIC;
    if (known && isFifo(fd))
        return record(fd, request, argument);
    return (int)syscall(SYS_ioctl, fd, request, argument);
}
