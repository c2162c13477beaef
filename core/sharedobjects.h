#pragma once

#include "mxshm.h"

#include <cstddef>

/// The IPC objects that the unit shares with other processes on the board: the segment that holds the record,
/// the matrix request queue and the matrix reply queue. Every operation returns the platform call's result.
class SharedObjects
{
public:
    /// Bytes of the whole segment; the record lies at its start.
    static constexpr std::size_t SegmentSize = 2UL * 1024 * 1024;

    SharedObjects() = default;
    SharedObjects(const SharedObjects &) = delete;
    SharedObjects &operator=(const SharedObjects &) = delete;

    /// Makes the segment, or gets it and fills it with zeros, attaches it, and gets or makes both queues.
    /// \return the attached record, or null
    MxShm *create();
    /// Attaches what another process has made and clears nothing. \return the attached record, or null
    MxShm *open();
    /// Detaches the segment. \return 0, or -1
    int close();
    /// Marks the segment for removal and removes both queues. \return 0, or -1 when any of them failed
    int remove();

    /// Identifiers of the queues, -1 until got.
    int requestQueue() const { return m_requestQueue; }
    int replyQueue() const { return m_replyQueue; }

private:
    MxShm *attach(std::size_t size, int flags);
    void openQueues(int flags);

    int m_segment = -1;
    MxShm *m_record = nullptr;
    int m_requestQueue = -1;
    int m_replyQueue = -1;
};
