#pragma once

#include <QByteArray>
#include <sys/types.h>

/// Holds one thread of another process, while the others go on, for as long as it lives.
class StuckThread
{
public:
    /// `thread` is the thread's name.
    StuckThread(qint64 process, const QByteArray &thread);
    StuckThread(const StuckThread &) = delete;
    StuckThread &operator=(const StuckThread &) = delete;
    /// Lets it go on.
    ~StuckThread();

    /// False when there is no such thread.
    bool isStuck() const { return m_thread > 0; }

    /// Whether its process has ended. To be asked until it has: before, the process is not gone for its
    /// parent.
    bool hasEnded();

private:
    pid_t m_thread = 0;
};
