#include "sharedobjects.h"

#include "mxsite.h"

#include <cstring>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/shm.h>

MxShm *SharedObjects::create()
{
    // A new segment is full of zeros as it is: clearing it would only fetch pages that are never used.
    if (attach(SegmentSize, IPC_CREAT | IPC_EXCL | 0666) == nullptr &&
        attach(SegmentSize, IPC_CREAT | 0666) != nullptr) {
        std::memset(static_cast<void *>(m_record), 0, SegmentSize);
    }
    openQueues(IPC_CREAT | 0666);
    return m_record;
}

MxShm *SharedObjects::open()
{
    attach(0, 0);
    openQueues(0);
    return m_record;
}

int SharedObjects::close()
{
    const int result = m_record != nullptr ? ::shmdt(m_record) : -1;
    m_record = nullptr;
    return result;
}

int SharedObjects::remove()
{
    const int segment = ::shmctl(m_segment, IPC_RMID, nullptr);
    const int requests = ::msgctl(m_requestQueue, IPC_RMID, nullptr);
    const int replies = ::msgctl(m_replyQueue, IPC_RMID, nullptr);
    return segment == 0 && requests == 0 && replies == 0 ? 0 : -1;
}

MxShm *SharedObjects::attach(std::size_t size, int flags)
{
    m_segment = ::shmget(MxSite::segmentKey(), size, flags);
    if (m_segment < 0) {
        return nullptr;
    }
    shmid_ds facts{};
    // A shorter segment under our key is not this record.
    if (::shmctl(m_segment, IPC_STAT, &facts) != 0 || facts.shm_segsz < sizeof(MxShm)) {
        return nullptr;
    }
    void *address = ::shmat(m_segment, nullptr, 0);
    m_record = address == reinterpret_cast<void *>(-1) ? nullptr : static_cast<MxShm *>(address);
    return m_record;
}

void SharedObjects::openQueues(int flags)
{
    m_requestQueue = ::msgget(MxSite::requestQueueKey(), flags);
    m_replyQueue = ::msgget(MxSite::replyQueueKey(), flags);
}
