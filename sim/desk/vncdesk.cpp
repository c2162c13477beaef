#include "vncdesk.h"

#include "networkports.h"

namespace
{
constexpr quint16 firstPort = 5900;
constexpr quint16 lastPort = 5999;
} // namespace

VncDesk::VncDesk(quint16 port)
    : m_port(port)
{
}

QString VncDesk::start(const QString &folder, const QSize &size)
{
    const QString mode = QString("%1x%2x24").arg(size.width()).arg(size.height());
    QString error = m_server.start({"Xvfb", "xvfb"}, {"-screen", "0", mode}, folder, "desk");
    if (error.isEmpty()) {
        error = startVnc();
    }
    // An end before this is an error of the start.
    connect(&m_vncServer, &ChildProcess::ended, this, &VncDesk::viewersLost);
    return error;
}

bool VncDesk::isUp()
{
    m_server.awaitEnd();
    return m_server.state() == QProcess::Running;
}

/// A port that is taken, be it only since it was tried, is passed over if another one will do.
QString VncDesk::startVnc()
{
    const int last = m_port ? m_port : lastPort;
    m_port = m_port ? m_port : firstPort;
    QString error = serveVnc();
    while (!error.isEmpty() && m_port < last && !checkLocalPort(m_port).isEmpty()) {
        ++m_port;
        error = serveVnc();
    }
    return error;
}

QString VncDesk::serveVnc()
{
    const QStringList display{"-norc", "-display", m_server.display(), "-auth", m_server.cookieFile()};
    const QStringList access{"-localhost", "-noipv6",  "-rfbport", QString::number(m_port),
                             "-nopw",      "-forever", "-shared"};
    const QStringList plain{"-quiet", "-nowireframe", "-noscrollcopyrect"};
    const QString error = checkLocalPort(m_port);
    return error.isEmpty()
               ? m_vncServer.bringUp({"x11vnc", "x11vnc"}, display + access + plain, m_server.logFile())
               : error;
}
