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

#define NEXT(name) ((__typeof__(&(name)))dlsym(RTLD_NEXT, #name))

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

static ssize_t noteDescriptor(ssize_t result, uint8_t kind, int fd, int64_t at, const void *bytes)
{
    char link[32], path[4096] = "";
    struct stat64 file;
    snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    if (result >= 0 && readlink(link, path, sizeof path - 1) > 0 && isRecorded(path) &&
        fstat64(fd, &file) == 0) {
        const size_t length = kind == Flushed ? strlen(path) : kind == Written ? (size_t)result : 0;
        note(kind, file.st_ino, at >= 0 ? at : lseek64(fd, 0, SEEK_CUR) - result,
             kind == Flushed ? path : bytes, length);
    }
    return result;
}

static int noteRenamed(int result, const char *from, const char *to)
{
    char both[8192];
    struct stat64 file;
    if (result == 0 && isRecorded(to) && stat64(to, &file) == 0) {
        note(Renamed, file.st_ino, 0, both, (size_t)snprintf(both, sizeof both, "%s%c%s", from, 0, to));
    }
    return result;
}

static int noteOpened(int fd, const char *path, int flags)
{
    const int unnamed = (flags & O_TMPFILE) == O_TMPFILE;
    if (flags & O_CREAT && !unnamed) {
        notePath(fd, Made, path);
    }
    return unnamed || flags & O_TRUNC ? (int)noteDescriptor(fd, Sized, fd, 0, NULL) : fd;
}

static int noteSynced(int result)
{
    note(Synced, 0, 0, NULL, 0);
    return result;
}

#define WATCH(type, name, parameters, arguments, after, ...)                                                 \
    type name parameters                                                                                     \
    {                                                                                                        \
        return (type)after(NEXT(name) arguments, __VA_ARGS__);                                               \
    }                                                                                                        \
    extern type name parameters
/* The mode is handed on whether there is one or not. */
#define WATCH_OPEN(name, parameters, ...)                                                                    \
    int name parameters                                                                                      \
    {                                                                                                        \
        va_list more;                                                                                        \
        va_start(more, flags);                                                                               \
        const mode_t mode = va_arg(more, mode_t);                                                            \
        va_end(more);                                                                                        \
        return noteOpened(NEXT(name)(__VA_ARGS__, flags, mode), path, flags);                                \
    }                                                                                                        \
    extern int name parameters

WATCH_OPEN(open, (const char *path, int flags, ...), path);
WATCH_OPEN(open64, (const char *path, int flags, ...), path);
WATCH_OPEN(openat, (int folder, const char *path, int flags, ...), folder, path);
WATCH_OPEN(openat64, (int folder, const char *path, int flags, ...), folder, path);
WATCH(ssize_t, write, (int fd, const void *bytes, size_t size), (fd, bytes, size), noteDescriptor, Written,
      fd, -1, bytes);
WATCH(ssize_t, pwrite64, (int fd, const void *bytes, size_t size, off64_t at), (fd, bytes, size, at),
      noteDescriptor, Written, fd, at, bytes);
WATCH(int, ftruncate64, (int fd, off64_t size), (fd, size), noteDescriptor, Sized, fd, size, NULL);
WATCH(int, fsync, (int fd), (fd), noteDescriptor, Flushed, fd, 0, NULL);
WATCH(int, fdatasync, (int fd), (fd), noteDescriptor, Flushed, fd, 0, NULL);
WATCH(int, mkdir, (const char *path, mode_t mode), (path, mode), notePath, Folder, path);
WATCH(int, unlink, (const char *path), (path), notePath, Unlinked, path);
WATCH(int, unlinkat, (int folder, const char *path, int flags), (folder, path, flags), notePath, Unlinked,
      path);
WATCH(int, link, (const char *from, const char *to), (from, to), notePath, Linked, to);
WATCH(int, linkat, (int a, const char *from, int b, const char *to, int flags), (a, from, b, to, flags),
      notePath, Linked, to);
WATCH(int, rename, (const char *from, const char *to), (from, to), noteRenamed, from, to);
WATCH(int, renameat2, (int a, const char *from, int b, const char *to, unsigned flags),
      (a, from, b, to, flags), noteRenamed, from, to);

/* Not carried out: it would wait for all disks of the machine, whoever writes to them. */
void sync(void)
{
    noteSynced(0);
}
int syncfs(int fd)
{
    return noteSynced(NEXT(syncfs)(fd));
}

/* Whoever writes in one of these ways writes in another one, as on a kernel that does not have it. */
ssize_t writev(int fd, const struct iovec *parts, int count)
{
    return count > 0 ? write(fd, parts->iov_base, parts->iov_len) : 0;
}
ssize_t copy_file_range(int in, off64_t *a, int out, off64_t *b, size_t size, unsigned flags)
{
    (void)in, (void)a, (void)out, (void)b, (void)size, (void)flags;
    errno = ENOSYS;
    return -1;
}
