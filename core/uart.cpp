#include "uart.h"

#include "mxsite.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace
{
/// Longer than a full driver's buffer needs for some room at any usual speed.
constexpr int RoomMs = 100;

bool hasRoom(int fd)
{
    pollfd room{fd, POLLOUT, 0};
    int ready = 0;
    do {
        ready = ::poll(&room, 1, RoomMs);
    } while (ready < 0 && errno == EINTR);
    return ready == 1;
}

struct Speed {
    int baud;
    speed_t constant;
};
constexpr Speed Speeds[] = {
    {300, B300},   {600, B600},     {1200, B1200},   {1800, B1800},   {2400, B2400},     {4800, B4800},
    {9600, B9600}, {19200, B19200}, {38400, B38400}, {57600, B57600}, {115200, B115200}, {230400, B230400},
};

speed_t speedOf(int baud)
{
    for (const Speed &speed : Speeds) {
        if (speed.baud == baud) {
            return speed.constant;
        }
    }
    return B115200;
}
} // namespace

int openUart(const char *path, int baud)
{
    const int fd = ::open(MxSite::path(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd > 0) {
        configureUart(fd, IGNBRK | IGNPAR, baud);
    }
    return fd;
}

void configureUart(int fd, unsigned inputFlags, int baud)
{
    termios attributes{};
    ::tcgetattr(fd, &attributes);
    attributes.c_iflag = inputFlags;
    attributes.c_oflag = 0;
    attributes.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
    attributes.c_cc[VTIME] = 0;
    attributes.c_cc[VMIN] = 0;
    ::cfsetispeed(&attributes, speedOf(baud));
    ::cfsetospeed(&attributes, speedOf(baud));
    ::tcsetattr(fd, TCSANOW, &attributes);
}

int writeUart(int fd, const void *bytes, int size)
{
    int written = 0;
    while (written < size) {
        const auto *rest = static_cast<const char *>(bytes) + written;
        const ssize_t count = ::write(fd, rest, static_cast<size_t>(size - written));
        if (count > 0) {
            written += static_cast<int>(count);
        } else if (count == 0 || (errno != EINTR && (errno != EAGAIN || written == 0 || !hasRoom(fd)))) {
            return written > 0 ? written : static_cast<int>(count);
        }
    }
    return written;
}
