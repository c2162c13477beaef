#include "maplist.h"

#include "routing.h"

#include <cstdio>

MapList::MapList(Page page, int cycles, Rest rest)
    : m_page(page)
    , m_period(cycles)
    , m_rest(rest)
{
}

void MapList::restart()
{
    m_cycles = 0;
    m_secondHalf = false;
}

void MapList::show(int slot)
{
    const int ports = portCount(*g_mxConfig);
    if (!fitsPanel(ports)) {
        return;
    }
    if (m_cycles == m_period) {
        m_cycles = 0;
        m_secondHalf = !m_secondHalf;
    }
    ++m_cycles;

    const bool isSecond = m_secondHalf && ports > MapButtons;
    State state(isSecond ? MapButtons : 0, ports, PanelMap{});
    Routing::copyMap(*g_mxConfig, slot, std::get<PanelMap>(state).data(), PanelMaxPort);
    if (m_shown != state) {
        m_shown = state;
        show(state);
    }
}

void MapList::show(const State &state) const
{
    const auto &[first, ports, inputs] = state;
    char text[32];
    for (int i = 0; i < MapButtons; ++i) {
        const int output = first + i;
        if (output < ports && inputs[output] < ports) {
            std::snprintf(text, sizeof text, "%02d>%02d", inputs[output] + 1, output + 1);
        } else if (output < ports) {
            std::snprintf(text, sizeof text, "  >%02d", output + 1);
        } else if (m_rest == Rest::Clear || ports > MapButtons) {
            text[0] = '\0';
        } else {
            break;
        }
        setButtonText(m_page, i, text);
    }
}
