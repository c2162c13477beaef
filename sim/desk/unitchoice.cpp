#include "unitchoice.h"

#include "unitfiles.h"

#include <QFile>
#include <algorithm>

namespace sim
{
namespace
{
constexpr int DefaultPorts = 16;
constexpr int DefaultScenes = 10;
constexpr int FrontPanelPorts = 40;
} // namespace

Result chooseUnit(const Options &options, UnitChoice *choice)
{
    const UnitFiles files(QFile::encodeName(options.folder).toStdString());
    const bool isNew = !QFile::exists(QString::fromStdString(files.settingsPath()));
    const auto set = [&](const char *key, int value) { choice->settings[key] = std::to_string(value); };

    choice->ports = options.ports ? options.ports : isNew ? DefaultPorts : 0;
    if (choice->ports) {
        set("system/port", choice->ports);
    } else {
        choice->ports = std::max(2, std::min(files.setting("system/port"), 160));
    }
    if (options.scenes || isNew) {
        set("system/scene", options.scenes ? options.scenes : DefaultScenes);
    }

    if (options.face == Face::FrontPanel && choice->ports > FrontPanelPorts) {
        return {QString("the front panel is for at most %1 ports").arg(FrontPanelPorts)};
    }
    const bool hasPanel = files.setting("system/keypad") > 0;
    const bool isPanel = options.face == Face::AsLastTime ? hasPanel : options.face == Face::FrontPanel;
    if (isPanel != hasPanel) {
        set("system/keypad", isPanel);
    }
    choice->isFrontPanel = isPanel && choice->ports <= FrontPanelPorts;
    // The program is told the path of its frame buffer in a list with colons.
    if (choice->isFrontPanel && options.folder.contains(':')) {
        return {QString("a unit with a front panel cannot be in %1, since there is a colon in the path")
                    .arg(options.folder)};
    }
    return {};
}
} // namespace sim
