/* For LD_PRELOAD: appends to the file MX_CUT_LOG what a process and its children do to the files below
 * MX_ROOT. Changes of mode are not in it: who starts the program reads a file of any mode. */
#define _GNU_SOURCE
#include "filerecord.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

#define NEXT(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

static int isRecorded(const char *path)
{
    const char *root = getenv("MX_ROOT");
    return root != NULL && strncmp(path, root, strlen(root)) == 0;
}

static void note(uint8_t kind, uint64_t file, int64_t at, const void *bytes, size_t length)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    struct FileRecord record = {kind, file, at, now.tv_sec * 1000000LL + now.tv_nsec / 1000,
                                (uint32_t)length};
    const struct iovec parts[2] = {{&record, sizeof record}, {(void *)bytes, length}};
    const int log = NEXT(open64)(getenv("MX_CUT_LOG"), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (NEXT(writev)(log, parts, 2) != (ssize_t)(sizeof record + length)) {
        abort();
    }
    close(log);
}

/* An operation on a path, whose file is the one that has it afterwards. */
static int notePath(int result, uint8_t kind, const char *path)
{
    struct stat64 file = {0};
    if (result >= 0 && isRecorded(path)) {
        stat64(path, &file);
        note(kind, file.st_ino, 0, path, strlen(path));
    }
    return result;
}

static ssize_t noteDescriptor(ssize_t result, uint8_t kind, int fd, int64_t at, const void *bytes,
                              size_t length)
{
    char link[32], path[4096] = "";
    struct stat64 file;
    snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    if (result >= 0 && readlink(link, path, sizeof path - 1) > 0 && isRecorded(path) &&
        fstat64(fd, &file) == 0) {
        const int64_t place = at >= 0 ? at : lseek64(fd, 0, SEEK_CUR) - (int64_t)length;
        note(kind, file.st_ino, place, kind == Flushed ? path : bytes,
             kind == Flushed ? strlen(path) : length);
    }
    return result;
}

static int opened(int fd, const char *path, int flags)
{
    if ((flags & O_TMPFILE) == O_TMPFILE) {
        return (int)noteDescriptor(fd, Sized, fd, 0, NULL, 0);
    }
    if (flags & O_CREAT) {
        notePath(fd, Made, path);
    }
    return flags & O_TRUNC ? (int)noteDescriptor(fd, Sized, fd, 0, NULL, 0) : fd;
}

#define OPEN(name, at, ...)                                                                                  \
    {                                                                                                        \
        va_list more;                                                                                        \
        va_start(more, flags);                                                                               \
        const mode_t mode = flags & O_CREAT || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(more, mode_t) : 0;  \
        va_end(more);                                                                                        \
        return opened(NEXT(name)(__VA_ARGS__, flags, mode), path, flags);                                    \
    }
int open(const char *path, int flags, ...) OPEN(open, , path) int open64(const char *path, int flags, ...)
    OPEN(open64, , path) int openat(int folder, const char *path, int flags, ...)
        OPEN(openat, , folder, path) int openat64(int folder, const char *path, int flags, ...)
            OPEN(openat64, , folder, path)

                ssize_t write(int fd, const void *bytes, size_t size)
{
    const ssize_t count = NEXT(write)(fd, bytes, size);
    return noteDescriptor(count, Written, fd, -1, bytes, (size_t)count);
}

ssize_t pwrite64(int fd, const void *bytes, size_t size, off64_t at)
{
    const ssize_t count = NEXT(pwrite64)(fd, bytes, size, at);
    return noteDescriptor(count, Written, fd, at, bytes, (size_t)count);
}

int ftruncate64(int fd, off64_t size)
{
    return (int)noteDescriptor(NEXT(ftruncate64)(fd, size), Sized, fd, size, NULL, 0);
}
int fsync(int fd)
{
    return (int)noteDescriptor(NEXT(fsync)(fd), Flushed, fd, 0, NULL, 0);
}
int fdatasync(int fd)
{
    return (int)noteDescriptor(NEXT(fdatasync)(fd), Flushed, fd, 0, NULL, 0);
}
int mkdir(const char *path, mode_t mode)
{
    return notePath(NEXT(mkdir)(path, mode), Folder, path);
}
int unlink(const char *path)
{
    return notePath(NEXT(unlink)(path), Unlinked, path);
}
int unlinkat(int folder, const char *path, int flags)
{
    return notePath(NEXT(unlinkat)(folder, path, flags), Unlinked, path);
}
int link(const char *from, const char *to)
{
    return notePath(NEXT(link)(from, to), Linked, to);
}
int linkat(int a, const char *from, int b, const char *to, int flags)
{
    return notePath(NEXT(linkat)(a, from, b, to, flags), Linked, to);
}

static int renamed(int result, const char *from, const char *to)
{
    char both[8192];
    struct stat64 file;
    if (result == 0 && isRecorded(to) && stat64(to, &file) == 0) {
        note(Renamed, file.st_ino, 0, both, (size_t)snprintf(both, sizeof both, "%s%c%s", from, 0, to));
    }
    return result;
}
int rename(const char *from, const char *to)
{
    return renamed(NEXT(rename)(from, to), from, to);
}
int renameat2(int a, const char *from, int b, const char *to, unsigned flags)
{
    return renamed(NEXT(renameat2)(a, from, b, to, flags), from, to);
}

void sync(void)
{
    NEXT(sync)();
    note(Synced, 0, 0, NULL, 0);
}
int syncfs(int fd)
{
    const int result = NEXT(syncfs)(fd);
    note(Synced, 0, 0, NULL, 0);
    return result;
}

ssize_t writev(int fd, const struct iovec *parts, int count)
{
    const ssize_t written = NEXT(writev)(fd, parts, count);
    int64_t end = written >= 0 ? lseek64(fd, 0, SEEK_CUR) : 0, at = end - written;
    for (int i = 0; i < count && at < end; ++i) {
        const int64_t part = end - at < (int64_t)parts[i].iov_len ? end - at : (int64_t)parts[i].iov_len;
        noteDescriptor(part, Written, fd, at, parts[i].iov_base, (size_t)part);
        at += part;
    }
    return written;
}
/* Who copies by it writes instead, as on a kernel that has no such call. */
ssize_t copy_file_range(int in, off64_t *a, int out, off64_t *b, size_t size, unsigned flags)
{
    (void)in, (void)a, (void)out, (void)b, (void)size, (void)flags;
    errno = ENOSYS;
    return -1;
}
