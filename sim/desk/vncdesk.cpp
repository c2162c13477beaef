#include "vncdesk.h"

#include "networkports.h"

namespace sim
{
namespace
{
constexpr quint16 FirstPort = 5900;
constexpr quint16 LastPort = 5999;
} // namespace

VncDesk::VncDesk(quint16 port)
    : m_port(port)
{
    // Asked to end while its display goes away as well, it may wait for that for ever.
    m_vncServer.setOrphanSignal(SIGKILL);
}

Result VncDesk::start(const QString &folder, const QSize &size)
{
    const QString mode = QString("%1x%2x24").arg(size.width()).arg(size.height());
    Result result = m_server.start({"Xvfb", "xvfb"}, {"-screen", "0", mode}, folder, "desk").then([this] {
        return startVnc();
    });
    // An end before this is an error of the start.
    connect(&m_vncServer, &ChildProcess::ended, this, &VncDesk::viewersLost);
    return result;
}

bool VncDesk::isUp()
{
    m_server.awaitEnd();
    return m_server.state() == QProcess::Running;
}

/// Passes over a port that is taken, even one taken only since it was tried, if another will do.
Result VncDesk::startVnc()
{
    const int last = m_port ? m_port : LastPort;
    m_port = m_port ? m_port : FirstPort;
    while (true) {
        const Result port = checkLocalPort(m_port);
        Result result = port.isDone() ? serveVnc() : port;
        const bool another = m_port < last && (!port.isDone() || !checkLocalPort(m_port).isDone());
        if (result.isDone() || !another) {
            return result;
        }
        ++m_port;
    }
}

Result VncDesk::serveVnc()
{
    const QStringList display{"-norc", "-display", m_server.display(), "-auth", m_server.cookieFile()};
    const QStringList access{"-localhost", "-noipv6",  "-rfbport", QString::number(m_port),
                             "-nopw",      "-forever", "-shared"};
    // Ended by force, it would leave its shared memory segments for ever, of which a machine has 4096.
    const QStringList plain{"-quiet", "-nowireframe", "-noscrollcopyrect", "-noshm"};
    return m_vncServer.bringUp({"x11vnc", "x11vnc"}, display + access + plain, m_server.logFile());
}
} // namespace sim
