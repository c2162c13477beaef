#pragma once

#include "xserver.h"

#include <QSize>

namespace sim
{
/// A desk for VNC viewers of this machine. For the thread that makes it.
class VncDesk : public QObject
{
    Q_OBJECT

public:
    /// `port` 0 is the first free one from 5900 to 5999.
    explicit VncDesk(quint16 port);

    /// Brings it up, with its files in this folder. Blocks for 0.2 s, and for 20 s at worst.
    Result start(const QString &folder, const QSize &size);

    /// Where viewers find it.
    quint16 port() const { return m_port; }

    /// Whether the display is there; it is given some time to end, as it may be about to.
    bool isUp();

    /// Has a program show itself there.
    void addTo(QProcessEnvironment *environment) const { m_server.addTo(environment); }

signals:
    /// The server for viewers has ended by itself.
    void viewersLost();

private:
    Result startVnc();
    Result serveVnc();

    quint16 m_port;
    XServer m_server;
    ChildProcess m_vncServer; ///< ends before the display
};
} // namespace sim
