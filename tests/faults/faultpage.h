#pragma once

#include <errno.h>

/* How a call can fail, as bits. A short one does a half of what it was asked for. */
enum { Io = 1, NoSpace = 2, Interrupted = 4, NoDescriptor = 8, Again = 16, Short = 32 };

/* What the product and its Qt call. A call counts when
 *   Always   it is made
 *   Ready    its descriptor has something to read: the loops that find nothing do not count
 *   Waiting  its message queue has something
 *   Adds     it adds to what is waited for
 * and fails without having been carried out, apart from those that
 *   Done     have done what they were asked for all the same.
 *
 * name, how it fails, when it counts */
#define CALLS(X)                                                                                             \
    X(open64, Io | NoSpace | Interrupted | NoDescriptor, Always)                                             \
    X(read, Io | Interrupted | Again | Short, Ready)                                                         \
    X(write, Io | NoSpace | Interrupted | Again | Short, Always)                                             \
    X(close, Io | Interrupted, Done)                                                                         \
    X(fsync, Io | NoSpace | Interrupted, Always)                                                             \
    X(fdatasync, Io | NoSpace, Always)                                                                       \
    X(rename, Io | NoSpace, Always)                                                                          \
    X(renameat2, Io | NoSpace, Always)                                                                       \
    X(link, Io | NoSpace, Always)                                                                            \
    X(linkat, Io | NoSpace, Always)                                                                          \
    X(unlink, Io, Always)                                                                                    \
    X(mkdir, Io | NoSpace, Always)                                                                           \
    X(chmod, Io, Always)                                                                                     \
    X(fchmod, Io, Always)                                                                                    \
    X(ftruncate64, Io | Interrupted, Always)                                                                 \
    X(lseek64, Io, Always)                                                                                   \
    X(stat64, Io, Always)                                                                                    \
    X(fstat64, Io, Always)                                                                                   \
    X(lstat64, Io, Always)                                                                                   \
    X(statx, Io, Always)                                                                                     \
    X(access, Io, Always)                                                                                    \
    X(flock, Interrupted | Again, Always)                                                                    \
    X(fcntl, NoDescriptor, Always)                                                                           \
    X(ioctl, Io | Interrupted, Always)                                                                       \
    X(tcgetattr, Io, Always)                                                                                 \
    X(tcsetattr, Io | Interrupted, Always)                                                                   \
    X(poll, Interrupted, Always)                                                                             \
    X(ppoll, Interrupted, Always)                                                                            \
    X(epoll_create1, NoDescriptor, Always)                                                                   \
    X(epoll_ctl, NoSpace, Adds)                                                                              \
    X(epoll_wait, Interrupted, Always)                                                                       \
    X(socket, NoDescriptor, Always)                                                                          \
    X(bind, Io, Always)                                                                                      \
    X(listen, Io, Always)                                                                                    \
    X(accept4, NoDescriptor | Interrupted | Again, Ready)                                                    \
    X(setsockopt, Io, Always)                                                                                \
    X(getsockopt, Io, Always)                                                                                \
    X(recv, Io | Interrupted | Again | Short, Ready)                                                         \
    X(recvmsg, Io | Interrupted | Again, Ready)                                                              \
    X(send, Interrupted | Again | Short, Always)                                                             \
    X(sendmsg, Interrupted | Again, Always)                                                                  \
    X(shmget, NoSpace, Always)                                                                               \
    X(shmat, NoDescriptor, Always)                                                                           \
    X(shmctl, Io, Always)                                                                                    \
    X(msgget, NoSpace, Always)                                                                               \
    X(msgctl, Io, Always)                                                                                    \
    X(msgrcv, Io | Interrupted, Waiting)                                                                     \
    X(msgsnd, Again | Interrupted, Always)                                                                   \
    X(pipe2, NoDescriptor, Always)                                                                           \
    X(eventfd, NoDescriptor, Always)                                                                         \
    X(signalfd, NoDescriptor, Always)                                                                        \
    X(pthread_create, Again, Always)                                                                         \
    X(system, Again, Always)

#define CALL_NAME(name, how, when) Call_##name,
enum { CALLS(CALL_NAME) CallCount };

/* The file that MX_FAULTS names; the harness and the interposer both map it. */
struct FaultPage {
    int armed;
    int call;   /* which is to fail ... */
    int failAt; /* ... at its how manieth time, from 1; 0 for none */
    int how;    /* one of the bits */
    int failed; /* whether it has */
    int count[CallCount];
};
