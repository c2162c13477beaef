#pragma once

#include "clientturns.h"
#include "mxsite.h"
#include "qmxtcp.h"
#include "qmxudp.h"
#include "testunit.h"

/// A unit with its network endpoints, served by the test's own event loop. Its recalls take no time unless
/// `pause` waits for something.
class NetworkUnit : public TestUnit
{
public:
    explicit NetworkUnit(int ports, const SceneStore::Pause &pause = atOnce)
        : TestUnit(ports)
    {
        start(true, pause);
        m_turns.start();
        m_udp.reset(new QMxUdp(m_turns, nullptr));
        m_tcp.reset(new QMxTcp(m_turns, nullptr));
    }

    QMxUdp &udp() { return *m_udp; }
    /// Waits, and serves nobody meanwhile, until the condition holds. \return false when it does not in 10 s
    bool stall(const std::function<bool()> &condition) { return hardware().waitFor(condition, 10000); }

private:
    ClientTurns m_turns;
    std::unique_ptr<QMxUdp> m_udp;
    std::unique_ptr<QMxTcp> m_tcp;
};
