#pragma once

#include <QByteArray>
#include <QtGlobal>
#include <sys/types.h>

/// Where the unit's files, IPC objects and network ports are.
///
/// On the device nothing is set and every value is the device's own. On a desk `MX_ROOT` names a folder that
/// stands in front of every absolute path, and `MX_TCP_PORT` and `MX_UDP_PORT` move the network ports. All
/// functions read the environment at each call and may be called on any thread.
namespace MxSite
{
/// The place of `devicePath` (absolute, as on the device) on this machine.
QByteArray path(const char *devicePath);

/// `path(devicePath)` as one word of a shell command.
QByteArray shellWord(const char *devicePath);

/// IPC keys: 1, 1 and 2 on the device. With `MX_ROOT` they follow from the folder's real path (FNV-1a, 32
/// bits), so that several units live on one machine and a unit finds its own objects again at the next start.
key_t segmentKey();
key_t requestQueueKey();
key_t replyQueueKey();

/// TCP port, 5000 unless `MX_TCP_PORT` holds 1..65535.
quint16 tcpPort();
/// First of the eight UDP ports, 4000 unless `MX_UDP_PORT` holds 1..65528.
quint16 udpPort();
} // namespace MxSite
