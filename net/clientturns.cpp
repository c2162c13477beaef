#include "clientturns.h"

#include "clientsession.h"

void ClientTurns::add(ClientSession *session)
{
    m_line.append(session);
    if (!m_round.isActive()) {
        m_round.start(0, this);
    }
}

void ClientTurns::remove(ClientSession *session)
{
    m_line.removeAll(session);
}

void ClientTurns::timerEvent(QTimerEvent *)
{
    // Whoever blocked in the last round stands behind those who have come meanwhile.
    if (m_line.removeOne(m_lastBlocked)) {
        m_line.append(m_lastBlocked);
    }
    ClientSession *blocked = nullptr;
    for (int left = m_line.size(); left > 0; --left) {
        ClientSession *session = m_line.takeFirst();
        if (!session->isBlocked()) {
            session->takeTurn();
        } else if (blocked == nullptr) {
            blocked = session;
        } else {
            m_line.append(session);
        }
    }
    m_lastBlocked = blocked;
    if (blocked != nullptr) {
        blocked->takeTurn();
    }
    if (m_line.isEmpty()) {
        m_round.stop();
    }
}
