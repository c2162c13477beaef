#pragma once

#include "result.h"
#include "screen.h"

#include <QStringList>

namespace sim
{
/// With this variable mxsim tells itself the VNC port of the desk that it has made.
constexpr char VncDeskVariable[] = "MXSIM_VNC_DESK";

/// How the unit is operated.
enum class Face { AsLastTime, Touchscreen, FrontPanel };

/// What the command line of mxsim says.
struct Options {
    QString folder;  ///< absolute
    QString program; ///< absolute; an executable file
    int ports = 0;   ///< 2..160; 0 when not given
    int scenes = 0;  ///< 10..40; 0 when not given
    quint16 tcpPort = 0;
    quint16 firstUdpPort = 0; ///< of eight
    Face face = Face::AsLastTime;
    ScreenKind screen = ScreenKind::None;
    quint16 vncPort = 0; ///< 0 when not given
    quint16 vncDesk = 0; ///< the VNC port of the desk that mxsim itself has made; 0 on a desk of others
    bool printLcd = false;
};

/// Reads the arguments, the program's own name first; the failure says what is wrong with them. Prints the
/// help or the version and exits when asked for it.
Result parseOptions(const QStringList &arguments, Options *options);
} // namespace sim
