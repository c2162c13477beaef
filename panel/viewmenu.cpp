#include "viewmenu.h"

#include "mxshm.h"

#include <cstdio>

namespace
{
constexpr int HalfCycles = 500;
} // namespace

ViewMenu::ViewMenu()
    : MenuPage(ViewPage)
    , m_list(ViewPage, HalfCycles, MapList::Rest::Keep)
{
}

void ViewMenu::enter()
{
    m_list.restart();
    m_shownPorts = 0;
}

void ViewMenu::show()
{
    const int ports = portCount(*g_mxConfig);
    if (ports != m_shownPorts) {
        m_shownPorts = ports;
        char size[16];
        std::snprintf(size, sizeof size, "%dx%d", ports, ports);
        setHeader("VIEW", size);
    }
    m_list.show(LiveMap);
}
