#pragma once

#include "childprocess.h"

enum class ScreenKind {
    Window, ///< a window of the desk
    Vnc,    ///< for VNC viewers of this machine
    None
};

/// The unit's screen of 1024x600: a display of its own that no other user can open, and the way to see it.
/// For the thread that makes it.
class Screen : public QObject
{
    Q_OBJECT

public:
    /// `vncPort` 0 is the first free one from 5900 to 5999.
    Screen(ScreenKind kind, quint16 vncPort);

    /// Ends the display. Whoever shows something on it should have ended before.
    ~Screen() override;

    /// Brings it up, with its files in this folder. Blocks for 0.2 s, and for 20 s at worst. Returns an empty
    /// text, or one line that says why not.
    QString start(const QString &folder);

    /// Gives it some time to end, as it may be about to; closed() is then sent meanwhile.
    void awaitEnd();

    /// Has a program show itself on the screen, with the unit's look and not the desk's.
    void addTo(QProcessEnvironment *environment) const;

    /// Where a person gets to see it; a second line is indented as in the start message.
    QString whereabouts() const;

signals:
    /// It has ended by itself; `byUser` tells that someone has closed the window.
    void closed(bool byUser);

private:
    struct Part {
        const char *program;
        const char *package; ///< Debian's
    };

    QString startServer(const Part &server, const QStringList &arguments);
    QString startVnc();
    QString serveVnc();
    QString bringUp(ChildProcess *process, const Part &part, const QStringList &arguments);
    void onEnded();

    const ScreenKind m_kind;
    quint16 m_vncPort;
    QString m_cookieFile;
    QString m_log;
    QString m_display;
    ChildProcess m_server;
    ChildProcess m_vncServer; ///< ends before the display
};
