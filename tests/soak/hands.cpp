#include "hands.h"

#include <QFile>
#include <QProcess>

namespace
{
void touch(int x, int y)
{
    QProcess::execute(
        QStringLiteral("xdotool"),
        QStringLiteral("mousemove %1 %2 mousedown 1 sleep 0.05 mouseup 1").arg(x).arg(y).split(' '));
}
} // namespace

/// The LED of an output that shows the selected input.
bool PanelHands::ready(TestUnit &unit)
{
    return unit.hardware().waitFor([&] { return unit.hardware().keys().isLit(51); }, 10000);
}

void PanelHands::act(TestUnit &unit, Load &load)
{
    sim::VirtualUnit &hardware = unit.hardware();
    const auto press = [&](int key) {
        hardware.pressKey(key);
        hardware.releaseKey(key);
    };
    switch (m_turn++ % 7) {
    case 0: // the remote leads to SWITCH
        m_input = load.any(40);
        for (const char key : QByteArray::number(m_input) + 'X') {
            hardware.pressRemote(key);
        }
        break;
    case 1:
        m_output = load.any(Load::HandOutputs);
        press(50 + m_output);
        toggle(load, m_output, m_input);
        break;
    case 3: // on SCENE, after MENU
        press(5);
        press(113);
        break;
    case 5: // on SETUP
        press(113);
        break;
    default:
        press(115);
    }
}

bool TouchHands::ready(TestUnit &unit)
{
    const QString saved = unit.path("/home/app/config/caption.ini");
    for (int tries = 0; tries < 20 && !QFile::exists(saved); ++tries) {
        touch(924, 45);
        touch(88, 555);
        for (const char digit : QByteArray("40617295")) {
            touch(55 + 83 * ((digit - '0' + 9) % 10), 247);
        }
        touch(910, 146);
        touch(724, 45);
        touch(925, 555);
        runUntil([&] { return QFile::exists(saved) || tries < 8; });
    }
    // While it saves it takes no touches; the first that it takes is undone.
    bool taken = false;
    for (int tries = 0; tries < 3 && !taken; ++tries) {
        touch(324, 45);
        touch(41 + 78, 121);
        touch(475, 121);
        taken = unit.hardware().waitFor([&] { return unit.hardware().board().routing().at(0) == 1; }, 3000);
    }
    return taken && unit.talk(sim::Wire::Control0, "1x1.") == "OK.";
}

void TouchHands::act(TestUnit &, Load &load)
{
    switch (m_turn++ % 7) {
    case 0:
        touch(324, 45); // to the switch page
        break;
    case 1:
        m_input = load.any(50);
        touch(41 + 78 * ((m_input - 1) % 5), 121 + 48 * ((m_input - 1) / 5));
        break;
    case 2:
        m_output = load.any(Load::HandOutputs);
        touch(475 + 78 * (m_output - 1), 121);
        toggle(load, m_output, m_input);
        break;
    case 3:
        touch(524, 45); // scenes
        break;
    case 4:
        touch(724, 45); // captions
        break;
    case 5:
        touch(925, 555); // save
        break;
    default:
        touch(924, 45); // settings
    }
}
