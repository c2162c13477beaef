#pragma once

#include "clientturns.h"
#include "mxsite.h"
#include "qmxtcp.h"
#include "qmxudp.h"
#include "testunit.h"

/// A unit with its network endpoints, served by the test's own event loop.
class NetworkUnit : public TestUnit
{
public:
    explicit NetworkUnit(int ports)
        : TestUnit(ports)
    {
        start();
        m_turns.start();
        m_udp.reset(new QMxUdp(m_turns, nullptr));
        m_tcp.reset(new QMxTcp(m_turns, nullptr));
    }

    QMxUdp &udp() { return *m_udp; }

private:
    ClientTurns m_turns;
    std::unique_ptr<QMxUdp> m_udp;
    std::unique_ptr<QMxTcp> m_tcp;
};
