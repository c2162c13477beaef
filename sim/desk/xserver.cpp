#include "xserver.h"

#include "cookiefile.h"

#include <QFile>

namespace sim
{
namespace
{
constexpr int EndMs = 500;
} // namespace

XServer::~XServer()
{
    stop();
    if (!m_cookieFile.isEmpty()) {
        QFile::remove(m_cookieFile);
    }
}

Result XServer::start(const ServerPart &server, const QStringList &arguments, const QString &folder,
                      const QString &name)
{
    m_log = folder + "/" + name + ".log";
    QFile::remove(m_log);
    m_cookieFile = folder + "/" + name + ".cookie";
    const QStringList access{"-displayfd", "1", "-auth", m_cookieFile, "-nolisten", "tcp"};
    const QStringList steady{"-noreset", "-s", "0", "-dpms", "-dpi", "96"};
    Result result = writeCookieFile(m_cookieFile).then([&] {
        return bringUp(server, arguments + access + steady, m_log);
    });
    m_display = ":" + readLine().trimmed();
    return result;
}

void XServer::awaitEnd()
{
    waitForFinished(EndMs);
}

void XServer::addTo(QProcessEnvironment *environment) const
{
    environment->insert("QT_QPA_PLATFORM", "xcb");
    environment->insert("DISPLAY", m_display);
    environment->insert("XAUTHORITY", m_cookieFile);
}
} // namespace sim
