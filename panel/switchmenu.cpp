#include "switchmenu.h"

#include "keys.h"
#include "qmxcomm.h"
#include "routing.h"

#include <cstdio>

namespace
{
constexpr int LedCycles = 5;
} // namespace

SwitchMenu::SwitchMenu(KeyLeds &leds)
    : MenuPage(SwitchPage)
    , m_leds(leds)
{
    labelButtons(SwitchPage, panelPorts());
}

void SwitchMenu::enter()
{
    g_mxComm->MxGpioWrite(GpioLine::SwitchIndicator, 1);
    g_mxComm->MxGpioWrite(GpioLine::SceneIndicator, 0);
    m_shown.reset();
}

void SwitchMenu::show()
{
    const int ports = panelPorts();
    if (m_leds.isDue(LedCycles)) {
        sendLeds(ports);
    }
    State state(ports, m_input, PanelMap{});
    PanelMap &map = std::get<PanelMap>(state);
    Routing::copyMap(*g_mxConfig, LiveMap, map.data(), PanelMaxPort);
    if (m_shown == state) {
        return;
    }
    m_shown = state;
    char status[16];
    std::snprintf(status, sizeof status, "%02d>", m_input + 1);
    setHeader("SWITCH", status);
    for (int output = 0; output < ports; ++output) {
        setButtonPressed(SwitchPage, output, map[output] == m_input);
    }
}

void SwitchMenu::press(int key)
{
    const int ports = panelPorts();
    if (key == KeyLeft) {
        g_mxComm->MxCmdOneToAll(static_cast<quint16>(m_input));
    } else if (key == KeyRight) {
        g_mxComm->MxCmdOneToNone(static_cast<quint16>(m_input));
    } else if (key <= ports) {
        m_input = key - 1;
    } else if (key > KeyOutputs && key <= KeyOutputs + ports) {
        toggle(key - KeyOutputs - 1);
    }
}

bool SwitchMenu::isRouted(int output) const
{
    return g_mxConfig->map[output] == m_input;
}

void SwitchMenu::sendLeds(int ports)
{
    std::uint8_t bytes[2 * PanelMaxPort];
    for (int i = 0; i < ports; ++i) {
        bytes[i] = ledByte(i + 1, i == m_input);
        bytes[ports + i] = ledByte(KeyOutputs + i + 1, isRouted(i));
    }
    m_leds.send(bytes, 2 * ports);
}

/// An output that shows the selected input goes dark.
void SwitchMenu::toggle(int output)
{
    const quint16 input = isRouted(output) ? MxNoInput : static_cast<quint16>(m_input);
    g_mxComm->MxCmdOneToOne(input, static_cast<quint16>(output));
}
