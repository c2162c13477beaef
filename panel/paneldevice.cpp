#include "paneldevice.h"

#include "mxsite.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

bool reopenDevice(int &fd, const char *device, int flags)
{
    closeDevice(fd);
    fd = ::open(MxSite::path(device).constData(), O_RDWR | O_CLOEXEC | flags);
    if (fd < 0) {
        std::printf("can't open file %s\n", device);
        std::fflush(stdout);
    }
    return fd >= 0;
}

void closeDevice(int &fd)
{
    if (fd >= 0) {
        ::close(fd);
    }
    fd = -1;
}
