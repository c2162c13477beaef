#include "unitchoice.h"

#include "unitsettings.h"

#include <QFile>

#include <algorithm>

namespace
{
constexpr int defaultPorts = 16;
constexpr int defaultScenes = 10;
constexpr int frontPanelPorts = 40;
} // namespace

QString chooseUnit(const Options &options, UnitChoice *choice)
{
    const std::string root = QFile::encodeName(options.folder).toStdString();
    const bool isNew = !QFile::exists(QString::fromStdString(sim::settingsPath(root)));
    const auto setting = [&](const char *key) { return sim::readSetting(root, key, 0); };
    const auto set = [&](const char *key, int value) { choice->settings[key] = std::to_string(value); };

    choice->ports = options.ports ? options.ports : isNew ? defaultPorts : 0;
    if (choice->ports) {
        set("system/port", choice->ports);
    } else {
        choice->ports = std::max(2, std::min(setting("system/port"), 160));
    }
    if (options.scenes || isNew) {
        set("system/scene", options.scenes ? options.scenes : defaultScenes);
    }

    if (options.face == Face::FrontPanel && choice->ports > frontPanelPorts) {
        return QString("the front panel is for at most %1 ports").arg(frontPanelPorts);
    }
    const bool hasPanel = setting("system/keypad") > 0;
    const bool isPanel = options.face == Face::AsLastTime ? hasPanel : options.face == Face::FrontPanel;
    if (isPanel != hasPanel) {
        set("system/keypad", isPanel);
    }
    choice->isFrontPanel = isPanel && choice->ports <= frontPanelPorts;
    // The program is told the path of its frame buffer in a list with colons.
    if (choice->isFrontPanel && options.folder.contains(':')) {
        return QString("a unit with a front panel cannot be in %1, since there is a colon in the path")
            .arg(options.folder);
    }
    return {};
}
