#pragma once

class MatrixLink;

/// Lets another process on the board talk to the switching board through the two message queues. One message
/// is a type, a 32-bit little-endian byte count and 512 data bytes, of which the first `count` are
/// meaningful.
class QueueRelay
{
public:
    QueueRelay(const MatrixLink &link, int requestQueue, int replyQueue);

    /// Most messages, and most reads of the link, in one step: a full queue of whole messages, and far more
    /// than the link carries meanwhile. Whoever sends without end holds up nothing else.
    static constexpr int MostPerStep = 32;

    /// Writes the waiting requests to the board, then takes what the board has sent off the link. Never
    /// waits. Does nothing when there is no reply queue.
    void step() const;

private:
    bool passRequest() const;
    bool dropAnswer() const;

    const MatrixLink &m_link;
    const int m_requestQueue;
    const int m_replyQueue;
};
