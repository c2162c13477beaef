#include "programenvironment.h"

#include "options.h"
#include "parts.h"
#include "screen.h"
#include "unitchoice.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace sim
{
namespace
{
Result preload(const QString &interposer, QProcessEnvironment *environment)
{
    if (!QFile::exists(interposer)) {
        return {QString("there is no %1").arg(interposer)};
    }
    // It goes into a list with blanks and colons.
    if (interposer.contains(' ') || interposer.contains(':')) {
        return {QString("cannot run from %1, since there is a blank or a colon in the path")
                    .arg(QFileInfo(interposer).path())};
    }
    const QString preloaded = environment->value("LD_PRELOAD");
    environment->insert("LD_PRELOAD", preloaded.isEmpty() ? interposer : interposer + ":" + preloaded);
    return {};
}

/// Where the program shows itself, if not where the environment says.
void addScreen(const Options &options, bool isFrontPanel, const Screen &screen,
               QProcessEnvironment *environment)
{
    const bool hasWindow = options.screen == ScreenKind::Window;
    if (!hasWindow && environment->contains("QT_QPA_PLATFORM")) {
        return;
    }
    if (isFrontPanel) {
        environment->insert("QT_QPA_PLATFORM",
                            "linuxfb:fb=" + options.folder + "/dev/fb0:tty=/dev/null:nographicsmodeswitch");
        // Terminal and input devices are those of this machine and not the unit's.
        environment->insert("QT_QPA_FB_DISABLE_INPUT", "1");
        environment->insert("QT_QPA_FB_HIDECURSOR", "1");
        environment->insert("QT_QPA_PRESERVE_CONSOLE_STATE", "1");
    } else if (hasWindow) {
        screen.addTo(environment);
        environment->insert("XDG_CURRENT_DESKTOP", "none");
    } else {
        environment->insert("QT_QPA_PLATFORM", "offscreen");
    }
}
} // namespace

Result makeProgramEnvironment(const Options &options, const UnitChoice &choice, const Screen &screen,
                              QProcessEnvironment *environment)
{
    *environment = QProcessEnvironment::systemEnvironment();
    const Parts parts = partsOf(QCoreApplication::applicationDirPath());
    environment->insert("MX_ROOT", options.folder);
    environment->insert("MX_TCP_PORT", QString::number(options.tcpPort));
    environment->insert("MX_UDP_PORT", QString::number(options.firstUdpPort));
    if (!environment->contains("FONTCONFIG_FILE")) {
        environment->insert("FONTCONFIG_FILE", parts.fonts);
    }
    addScreen(options, choice.isFrontPanel, screen, environment);
    return preload(parts.interposer, environment);
}
} // namespace sim
