#pragma once

#include "xserver.h"

namespace sim
{
/// Where mxsim and its unit are to be seen.
enum class ScreenKind {
    Window, ///< a window of the desk
    Vnc,    ///< a desk of its own, for VNC viewers of this machine
    None
};

/// The unit's touchscreen: a display of its own inside of a window. For the thread that makes it.
class Screen : public QObject
{
    Q_OBJECT

public:
    /// Brings it up in this window of 1024x600, with its files in this folder.
    Result start(const QString &folder, quint64 windowId);

    /// Gives it some time to end, as it may be about to; closed() is then sent meanwhile.
    void awaitEnd() { m_server.awaitEnd(); }

    /// Has a program show itself on the screen.
    void addTo(QProcessEnvironment *environment) const { m_server.addTo(environment); }

signals:
    /// It has ended by itself.
    void closed();

private:
    XServer m_server;
};
} // namespace sim
