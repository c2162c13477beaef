/* Takes the place of the C library's ioctl(). A device that is a FIFO gets its GPIO and SPI requests as
 * records (see ioctlrecord.h), the frame buffer's file is described as one; everything else goes to the
 * kernel. On a machine of 32 bits it has two names, of which this is the one with times of 32 bits. */
#undef _TIME_BITS
#define _GNU_SOURCE
#include "framebuffer.h"
#include "ioctlrecord.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/fb.h>
#include <linux/spi/spidev.h>
#include <stdarg.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

enum { MaxTransfers = 511, MaxParts = 1 + 2 * MaxTransfers }; /* what _IOC_SIZE can count */

/* A file's type and size, whatever its times are. */
static struct statx statusOf(int fd)
{
    struct statx status = {0};
    statx(fd, "", AT_EMPTY_PATH, STATX_TYPE | STATX_SIZE, &status);
    return status;
}

static int isFifo(int fd)
{
    return S_ISFIFO(statusOf(fd).stx_mode);
}

static int isFrameBuffer(int fd)
{
    const struct statx status = statusOf(fd);
    return S_ISREG(status.stx_mode) && status.stx_size == FrameBufferSize;
}

static int isSpiMessage(unsigned long request)
{
    return _IOC_NR(request) == 0 && _IOC_DIR(request) == _IOC_WRITE;
}

/* Adds what lies behind a spidev argument to the parts of the record; returns their new number. */
static int addPayload(struct iovec *parts, int count, unsigned long request, void *argument)
{
    if (!argument || _IOC_DIR(request) != _IOC_WRITE) {
        return count;
    }
    if (!isSpiMessage(request)) {
        parts[count++] = (struct iovec){argument, _IOC_SIZE(request)};
        return count;
    }
    struct spi_ioc_transfer *transfers = argument;
    for (size_t i = 0; i < _IOC_SIZE(request) / sizeof *transfers; ++i) {
        parts[count++] = (struct iovec){&transfers[i], sizeof *transfers};
        if (transfers[i].tx_buf) {
            parts[count++] = (struct iovec){(void *)(uintptr_t)transfers[i].tx_buf, transfers[i].len};
        }
    }
    return count;
}

/* A message returns the bytes that its transfers moved, whether or not they had a tx buffer. */
static int result(unsigned long request, const struct spi_ioc_transfer *transfers)
{
    int bytes = 0;
    if (transfers && _IOC_TYPE(request) == SPI_IOC_MAGIC && isSpiMessage(request)) {
        for (size_t i = 0; i < _IOC_SIZE(request) / sizeof *transfers; ++i) {
            bytes += (int)transfers[i].len;
        }
    }
    return bytes;
}

static int64_t nowUs(void)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * INT64_C(1000000) + now.tv_nsec / 1000;
}

static int record(int fd, unsigned long request, void *argument)
{
    struct IoctlRecord head = {sizeof head, (uint32_t)request, (uintptr_t)argument, nowUs()};
    struct iovec parts[MaxParts];
    parts[0] = (struct iovec){&head, sizeof head};
    const int count = _IOC_TYPE(request) == SPI_IOC_MAGIC ? addPayload(parts, 1, request, argument) : 1;
    for (int i = 1; i < count; ++i) {
        head.size += (uint32_t)parts[i].iov_len;
    }

    const ssize_t written = writev(fd, parts, count);
    if (written == (ssize_t)head.size) {
        return result(request, argument);
    }
    if (written >= 0) {
        errno = EIO; /* cut off by a signal */
    }
    return -1;
}

static void describeDots(struct fb_var_screeninfo *info)
{
    memset(info, 0, sizeof *info);
    info->xres = info->xres_virtual = FrameBufferWidth;
    info->yres = info->yres_virtual = FrameBufferHeight;
    info->bits_per_pixel = 16;
    info->red = (struct fb_bitfield){.offset = 11, .length = 5};
    info->green = (struct fb_bitfield){.offset = 5, .length = 6};
    info->blue = (struct fb_bitfield){.offset = 0, .length = 5};
}

static void describeMemory(struct fb_fix_screeninfo *info)
{
    memset(info, 0, sizeof *info);
    memcpy(info->id, "mxsim", sizeof "mxsim");
    info->smem_len = FrameBufferSize;
    info->type = FB_TYPE_PACKED_PIXELS;
    info->visual = FB_VISUAL_TRUECOLOR;
    info->line_length = FrameBufferRowBytes;
}

/* What it is asked to change stays as it is. Returns whether a frame buffer knows the request. */
static int answerAsFrameBuffer(unsigned long request, void *argument)
{
    switch (request) {
    case FBIOGET_VSCREENINFO:
        describeDots(argument);
        return 1;
    case FBIOGET_FSCREENINFO:
        describeMemory(argument);
        return 1;
    case FBIOPUT_VSCREENINFO:
    case FBIOPAN_DISPLAY:
    case FBIOBLANK:
        return 1;
    default:
        return 0;
    }
}

int ioctl(int fd, unsigned long request, ...)
{
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);

    const int known = request <= 1 || _IOC_TYPE(request) == SPI_IOC_MAGIC;
    if (known && isFifo(fd)) {
        return record(fd, request, argument);
    }
    if (_IOC_TYPE(request) == FrameBufferRequest && isFrameBuffer(fd) &&
        answerAsFrameBuffer(request, argument)) {
        return 0;
    }
    return (int)syscall(SYS_ioctl, fd, request, argument);
}

/* The other name, which programs with times of 64 bits call. */
int __ioctl_time64(int fd, unsigned long request, ...) __attribute__((nothrow, leaf, alias("ioctl")));
