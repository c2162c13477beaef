#pragma once

#include "clientturns.h"

#include <QByteArray>
#include <QQueue>

/// One client of the network, whatever the transport: the blocks that it has sent, what of them has not
/// been carried out, and the way of its replies. Commands are carried out in their order, in turns: a turn
/// ends after so many quick commands, in front of a command that blocks, and behind it. Replies of a turn
/// leave together, so that none waits for a command that blocks.
///
/// Kept for a client are at most two blocks of text and the replies of one turn; a transport hands over no
/// more while `isResting()` is false, or bounds what it hands over by `queuedBytes()`. Main thread.
class ClientSession : public TurnTaker
{
public:
    /// Bytes of the longest block, and of the longest line; a longer line is an error, whatever is in it.
    static constexpr int MaxBlock = 64 * 1024;

    explicit ClientSession(ClientTurns &turns)
        : m_turns(turns)
    {
    }
    ClientSession(const ClientSession &) = delete;
    ClientSession &operator=(const ClientSession &) = delete;
    virtual ~ClientSession();

    void takeTurn() override;
    bool isBlocked() const override { return m_state == Blocked; }

protected:
    /// What the end of a block means for a last line without a terminator.
    enum End {
        Final, ///< it is a line like any other
        Open,  ///< it may go on in the next block
    };

    /// Takes a block of at most `MaxBlock` bytes and carries out what one turn allows, unless older blocks
    /// wait. Nothing may wait when it has an `Open` end.
    void receive(const char *bytes, int size, End end);
    /// To be called behind `receive`: waits for another turn when something is left. It may be the end of
    /// this object.
    void settle();

    /// Sends the replies, one behind the other; each ends with its only ".".
    virtual void sendReplies(const char *replies, int size) = 0;
    /// Sends a block for the board back as its acknowledgement.
    virtual void sendBlock(const char *bytes, int size) = 0;
    /// True while the client does not take what has been sent; `settle` then ends the pause.
    virtual bool isStalled() const { return false; }
    /// A turn is over. It may be the end of this object.
    virtual void onSettled() = 0;

    bool isResting() const { return m_state == Resting; }
    /// True when the beginning of a line waits for the rest of it.
    bool hasTail() const { return isResting() && !m_blocks.isEmpty(); }
    int queuedBytes() const { return m_queuedBytes; }

private:
    enum State {
        Resting, ///< nothing left, but perhaps the beginning of a line
        Waiting, ///< something is left
        Blocked, ///< a command that blocks is next
    };

    int run(const char *bytes, int size, End end);
    int runText(const char *bytes, int size, End end);
    void forward(const char *bytes, int size);
    void goOn();
    void keep(const char *bytes, int size);
    int skipOverlongLine(const char *bytes, int size, End end);

    ClientTurns &m_turns;
    State m_state = Resting;
    QQueue<QByteArray> m_blocks;
    End m_end = Final;       ///< of the last block
    bool m_begun = false;    ///< the first block is the rest of a text
    bool m_overlong = false; ///< what comes is dropped up to the next terminator
    int m_queuedBytes = 0;
};
