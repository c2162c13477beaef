#include "xserver.h"

#include "cookiefile.h"

#include <QFile>

namespace
{
constexpr int endMs = 2000; ///< of a busy machine
} // namespace

XServer::~XServer()
{
    stop();
    if (!m_cookieFile.isEmpty()) {
        QFile::remove(m_cookieFile);
    }
}

QString XServer::start(const ServerPart &server, const QStringList &arguments, const QString &folder,
                       const QString &name)
{
    m_log = folder + "/" + name + ".log";
    QFile::remove(m_log);
    m_cookieFile = folder + "/" + name + ".cookie";
    QString error = writeCookieFile(m_cookieFile);
    if (error.isEmpty()) {
        const QStringList access{"-displayfd", "1", "-auth", m_cookieFile, "-nolisten", "tcp"};
        const QStringList steady{"-noreset", "-s", "0", "-dpms", "-dpi", "96"};
        error = bringUp(server, arguments + access + steady, m_log);
    }
    m_display = ":" + readLine().trimmed();
    return error;
}

void XServer::awaitEnd()
{
    waitForFinished(endMs);
}

void XServer::addTo(QProcessEnvironment *environment) const
{
    environment->insert("QT_QPA_PLATFORM", "xcb");
    environment->insert("DISPLAY", m_display);
    environment->insert("XAUTHORITY", m_cookieFile);
}
