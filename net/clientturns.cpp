#include "clientturns.h"

#include <QElapsedTimer>
#include <algorithm>

namespace
{
constexpr qint64 StartMs = 1000;
}

void ClientTurns::add(TurnTaker *session)
{
    m_line.append(session);
    if (!m_round.isActive()) {
        m_round.start(0, this);
    }
}

void ClientTurns::remove(TurnTaker *session)
{
    m_line.removeAll(session);
}

void ClientTurns::start()
{
    if (m_phase == Starting) {
        m_phase = Serving;
    }
}

void ClientTurns::stop()
{
    m_phase = Over;
}

void ClientTurns::timerEvent(QTimerEvent *)
{
    serveQuickOnes();
    TurnTaker *blocked = mayBlock() ? takeBlocked() : nullptr;
    m_blockedInLastRound = blocked != nullptr;
    if (blocked != nullptr) {
        QElapsedTimer elapsed;
        elapsed.start();
        m_lastBlocked = blocked;
        blocked->takeTurn();
        m_blockedMs += elapsed.elapsed();
    }
    if (m_line.isEmpty()) {
        m_round.stop();
    }
}

bool ClientTurns::mayBlock() const
{
    const bool inTime = m_phase == Serving || (m_phase == Starting && m_blockedMs < StartMs);
    return inTime && !m_blockedInLastRound;
}

void ClientTurns::serveQuickOnes()
{
    for (int left = m_line.size(); left > 0; --left) {
        TurnTaker *session = m_line.takeFirst();
        if (session->isBlocked()) {
            m_line.append(session);
        } else {
            session->takeTurn();
        }
    }
}

/// The first in the line whose next command blocks; null when there is none. Whoever blocked last stands
/// behind those who have come meanwhile.
TurnTaker *ClientTurns::takeBlocked()
{
    if (m_line.removeOne(m_lastBlocked)) {
        m_line.append(m_lastBlocked);
    }
    const auto found = std::find_if(m_line.begin(), m_line.end(),
                                    [](const TurnTaker *session) { return session->isBlocked(); });
    if (found == m_line.end()) {
        return nullptr;
    }
    TurnTaker *session = *found;
    m_line.erase(found);
    return session;
}
