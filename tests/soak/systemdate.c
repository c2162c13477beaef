// Preloaded, the system's date is so many seconds off as the file MX_DATE says at that moment.
#define _GNU_SOURCE
#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

int clock_gettime(clockid_t clock, struct timespec *now)
{
    static const volatile long *seconds = NULL;
    if (seconds == NULL) {
        const char *path = getenv("MX_DATE");
        const int file = path == NULL ? -1 : open(path, O_RDONLY | O_CLOEXEC);
        void *shared = mmap(NULL, sizeof *seconds, PROT_READ, MAP_SHARED, file, 0);
        if (shared == MAP_FAILED) {
            abort();
        }
        close(file);
        seconds = shared;
    }
    const int result = (int)syscall(SYS_clock_gettime, clock, now);
    if (clock == CLOCK_REALTIME) {
        now->tv_sec += *seconds;
    }
    return result;
}
