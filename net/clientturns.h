#pragma once

#include <QBasicTimer>
#include <QList>
#include <QObject>

/// Who stands in the line of `ClientTurns`.
class TurnTaker
{
public:
    /// Goes on with what waits: quick commands, or one that blocks when that is what is next. It may be the
    /// end of this object.
    virtual void takeTurn() = 0;
    /// True when the next command blocks its caller.
    virtual bool isBlocked() const = 0;

protected:
    ~TurnTaker() = default;
};

/// Gives the sessions that have something left to do their turns, one round in each turn of the event loop:
/// first whoever has quick commands, then at most one command that blocks, in the order of waiting. Between
/// rounds touches, timers, signals and other clients are served. One for all network ports. Main thread.
class ClientTurns : public QObject
{
public:
    /// Until this is called, while the program starts, commands that block may take one second in all, so
    /// that they cannot hold up the start; the others wait.
    void start();
    /// Carries out no more of them: the program is about to end.
    void stop();

    /// Puts the session at the end of the line.
    void add(TurnTaker *session);
    void remove(TurnTaker *session);

    /// Where the replies of a turn are gathered, for the session whose turn it is.
    static constexpr int ReplyRoom = 64 * 1024;
    char *replies() { return m_replies; }

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    bool mayBlock() const;
    TurnTaker *takeBlocked();
    void serveQuickOnes();

    enum { Starting, Serving, Over } m_phase = Starting;
    QList<TurnTaker *> m_line;
    qint64 m_blockedMs = 0; ///< by all that was carried out
    bool m_blockedInLastRound = false;
    TurnTaker *m_lastBlocked = nullptr; ///< only compared, since it may be gone
    QBasicTimer m_round;
    char m_replies[ReplyRoom];
};
