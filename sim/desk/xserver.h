#pragma once

#include "childprocess.h"

#include <QProcessEnvironment>

namespace sim
{
/// An X display of its own that no other user can open. For the thread that makes it.
class XServer : public ChildProcess
{
    Q_OBJECT

public:
    /// Ends the display. Whoever shows something on it should have ended before.
    ~XServer() override;

    /// Brings it up; its cookie and its log are "NAME.cookie" and "NAME.log" in this folder. Blocks for 0.1
    /// s, and for 10 s at worst.
    Result start(const ServerPart &server, const QStringList &arguments, const QString &folder,
                 const QString &name);

    /// Gives it some time to end, as it may be about to; ended() is then sent meanwhile.
    void awaitEnd();

    QString display() const { return m_display; }
    QString cookieFile() const { return m_cookieFile; }
    QString logFile() const { return m_log; }

    /// Has a program show itself there.
    void addTo(QProcessEnvironment *environment) const;

private:
    QString m_cookieFile;
    QString m_log;
    QString m_display;
};
} // namespace sim
