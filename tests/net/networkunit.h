#pragma once

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
        m_udp.reset(new QMxUdp(nullptr));
        m_tcp.reset(new QMxTcp(nullptr));
    }

private:
    std::unique_ptr<QMxUdp> m_udp;
    std::unique_ptr<QMxTcp> m_tcp;
};
