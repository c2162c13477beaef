#include "screen.h"

QString Screen::start(const QString &folder, quint64 windowId)
{
    QString error = m_server.start({"Xephyr", "xserver-xephyr"},
                                   {"-no-host-grab", "-parent", QString::number(windowId)}, folder, "screen");
    // An end before this is an error of the start.
    connect(&m_server, &ChildProcess::ended, this, &Screen::closed);
    return error;
}
