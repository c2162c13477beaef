#pragma once

#include <QString>

constexpr quint16 udpPortCount = 8;

/// Whether the control program will get its network ports. Returns an empty text, or one line that names the
/// first one that is not to be had.
QString checkNetworkPorts(quint16 tcpPort, quint16 firstUdpPort);

/// The same for a TCP port of the loopback interface.
QString checkLocalPort(quint16 tcpPort);
