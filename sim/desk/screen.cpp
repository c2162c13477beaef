#include "screen.h"

namespace sim
{
Result Screen::start(const QString &folder, quint64 windowId)
{
    Result result = m_server.start({"Xephyr", "xserver-xephyr"},
                                   {"-no-host-grab", "-parent", QString::number(windowId)}, folder, "screen");
    // An end before this is an error of the start.
    connect(&m_server, &ChildProcess::ended, this, &Screen::closed);
    return result;
}
} // namespace sim
