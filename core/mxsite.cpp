#include "mxsite.h"

#include <QFileInfo>

namespace
{
QByteArray root()
{
    return qgetenv("MX_ROOT");
}

/// The `index`th key of the unit: FNV-1a over the folder's real path and the index.
key_t derivedKey(int index, key_t deviceKey)
{
    if (root().isEmpty()) {
        return deviceKey;
    }
    const QByteArray folder = QFileInfo(QFile::decodeName(root())).canonicalFilePath().toUtf8();
    quint32 hash = 2166136261U;
    for (const char c : folder + char('0' + index)) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    }
    // The sign bit stays clear and key 0 (IPC_PRIVATE) is never met.
    return static_cast<key_t>((hash & 0x7FFFFFFFU) | 1U << 30);
}

quint16 portFromEnvironment(const char *name, int highest, quint16 devicePort)
{
    bool ok = false;
    const int value = qgetenv(name).toInt(&ok);
    return ok && value >= 1 && value <= highest ? static_cast<quint16>(value) : devicePort;
}
} // namespace

QByteArray MxSite::path(const char *devicePath)
{
    return root() + devicePath;
}

QByteArray MxSite::shellWord(const char *devicePath)
{
    return "'" + path(devicePath).replace("'", "'\\''") + "'";
}

key_t MxSite::segmentKey()
{
    return derivedKey(0, 1);
}

key_t MxSite::requestQueueKey()
{
    return derivedKey(1, 1);
}

key_t MxSite::replyQueueKey()
{
    return derivedKey(2, 2);
}

quint16 MxSite::tcpPort()
{
    return portFromEnvironment("MX_TCP_PORT", 65535, 5000);
}

quint16 MxSite::udpPort()
{
    return portFromEnvironment("MX_UDP_PORT", 65528, 4000);
}
