/* For programs under qemu's user emulation: its clone(2) takes CLONE_PIDFD and gives no descriptor, while its
 * waitid(2) knows P_PIDFD, by which Qt finds out whether there is one. So a child process would never end.
 * With this Qt does as on an older kernel. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdarg.h>
#include <sys/syscall.h>
#include <sys/wait.h>

long syscall(long number, ...)
{
    long arguments[6];
    va_list list;
    va_start(list, number);
    for (int i = 0; i < 6; ++i) {
        arguments[i] = va_arg(list, long);
    }
    va_end(list);
    if (number == SYS_waitid && arguments[0] == P_PIDFD) {
        errno = EINVAL;
        return -1;
    }
    long (*next)(long, ...) = (long (*)(long, ...))dlsym(RTLD_NEXT, "syscall");
    return next(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]);
}
