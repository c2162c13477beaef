#include "screen.h"

#include "cookiefile.h"
#include "networkports.h"

#include <QDir>

namespace
{
constexpr int startMs = 10000;
constexpr int endMs = 500;
constexpr quint16 firstVncPort = 5900;
constexpr quint16 lastVncPort = 5999;

/// Variables with which a desk changes the look and the size of Qt's widgets.
const char *const deskVariables[] = {"QT_QPA_PLATFORMTHEME",    "QT_STYLE_OVERRIDE",
                                     "QT_SCALE_FACTOR",         "QT_AUTO_SCREEN_SCALE_FACTOR",
                                     "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"};
} // namespace

Screen::Screen(ScreenKind kind, quint16 vncPort)
    : m_kind(kind)
    , m_vncPort(vncPort)
{
}

Screen::~Screen()
{
    if (!m_cookieFile.isEmpty()) {
        QFile::remove(m_cookieFile);
    }
}

QString Screen::start(const QString &folder)
{
    if (m_kind == ScreenKind::None) {
        return {};
    }
    m_log = folder + "/screen.log";
    QFile::remove(m_log);
    m_cookieFile = folder + "/screen.cookie";
    QString error = writeCookieFile(m_cookieFile);
    if (error.isEmpty() && m_kind == ScreenKind::Window) {
        error = startServer({"Xephyr", "xserver-xephyr"}, {"-screen", "1024x600", "-no-host-grab", "-title",
                                                           "mxsim: " + QDir(folder).dirName()});
    } else if (error.isEmpty()) {
        error = startServer({"Xvfb", "xvfb"}, {"-screen", "0", "1024x600x24"});
    }
    if (error.isEmpty() && m_kind == ScreenKind::Vnc) {
        error = startVnc();
    }
    // An end before this is an error of the start.
    connect(&m_server, &ChildProcess::ended, this, &Screen::onEnded);
    connect(&m_vncServer, &ChildProcess::ended, this, &Screen::onEnded);
    return error;
}

void Screen::awaitEnd()
{
    m_server.waitForFinished(endMs);
}

void Screen::addTo(QProcessEnvironment *environment) const
{
    if (m_kind != ScreenKind::None) {
        environment->insert("QT_QPA_PLATFORM", "xcb");
        environment->insert("DISPLAY", m_display);
        environment->insert("XAUTHORITY", m_cookieFile);
        for (const char *name : deskVariables) {
            environment->remove(name);
        }
        environment->insert("XDG_CURRENT_DESKTOP", "none");
    } else if (!environment->contains("QT_QPA_PLATFORM")) {
        environment->insert("QT_QPA_PLATFORM", "offscreen");
    }
}

QString Screen::whereabouts() const
{
    switch (m_kind) {
    case ScreenKind::Window:
        return "a window of this desk";
    case ScreenKind::Vnc:
        return QString("vnc://127.0.0.1:%1, for any VNC viewer; from another machine\n"
                       "              after: ssh -L %1:127.0.0.1:%1 this-machine")
            .arg(m_vncPort);
    case ScreenKind::None:
        break;
    }
    return "none";
}

QString Screen::startServer(const Part &server, const QStringList &arguments)
{
    const QStringList access{"-displayfd", "1", "-auth", m_cookieFile, "-nolisten", "tcp"};
    const QStringList steady{"-noreset", "-s", "0", "-dpms", "-dpi", "96"};
    QString error = bringUp(&m_server, server, arguments + access + steady);
    m_display = ":" + m_server.readLine().trimmed();
    return error;
}

/// A port that is taken, be it only since it was tried, is passed over if another one will do.
QString Screen::startVnc()
{
    const int last = m_vncPort ? m_vncPort : lastVncPort;
    m_vncPort = m_vncPort ? m_vncPort : firstVncPort;
    QString error = serveVnc();
    while (!error.isEmpty() && m_vncPort < last && !checkLocalPort(m_vncPort).isEmpty()) {
        ++m_vncPort;
        error = serveVnc();
    }
    return error;
}

QString Screen::serveVnc()
{
    const QStringList display{"-norc", "-display", m_display, "-auth", m_cookieFile};
    const QStringList access{"-localhost", "-noipv6",  "-rfbport", QString::number(m_vncPort),
                             "-nopw",      "-forever", "-shared"};
    const QStringList plain{"-quiet", "-nowireframe", "-noscrollcopyrect"};
    const QString error = checkLocalPort(m_vncPort);
    return error.isEmpty() ? bringUp(&m_vncServer, {"x11vnc", "x11vnc"}, display + access + plain) : error;
}

/// Starts a process that says on its output that it is up, and then no more.
QString Screen::bringUp(ChildProcess *process, const Part &part, const QStringList &arguments)
{
    process->setStandardErrorFile(m_log, QIODevice::Append);
    QString error = process->launch(part.program, arguments);
    if (error.isEmpty() && !process->waitForReadyRead(startMs)) {
        process->stop();
        error = QString("%1 did not come up, see %2").arg(part.program, m_log);
    }
    return error.isEmpty() ? error : QString("%1 (Debian package %2)").arg(error, part.package);
}

void Screen::onEnded()
{
    emit closed(m_kind == ScreenKind::Window && m_server.exitStatus() == QProcess::NormalExit);
}
