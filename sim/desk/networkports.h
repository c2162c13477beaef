#pragma once

#include "result.h"

#include <QtGlobal>

namespace sim
{
constexpr quint16 UdpPortCount = 8;

/// Whether the control program will get its network ports; the failure names the first that cannot be had.
Result checkNetworkPorts(quint16 tcpPort, quint16 firstUdpPort);

/// The same for a TCP port of the loopback interface.
Result checkLocalPort(quint16 tcpPort);
} // namespace sim
