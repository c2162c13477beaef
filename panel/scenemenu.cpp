#include "scenemenu.h"

#include "keys.h"
#include "mxshm.h"
#include "qmxcomm.h"

#include <cstdio>

namespace
{
constexpr int HalfCycles = 300;
constexpr int LedCycles = 10;
} // namespace

SceneMenu::SceneMenu(KeyLeds &leds)
    : MenuPage(ScenePage)
    , m_leds(leds)
    , m_list(ScenePage, HalfCycles, MapList::Rest::Clear)
{
    labelButtons(ScenePage, sceneCount(*g_mxConfig));
}

void SceneMenu::enter()
{
    g_mxComm->MxGpioWrite(GpioLine::SwitchIndicator, 0);
    g_mxComm->MxGpioWrite(GpioLine::SceneIndicator, 1);
    m_list.restart();
    m_shown.reset();
}

void SceneMenu::show()
{
    if (m_leds.isDue(LedCycles)) {
        const std::uint8_t bytes[] = {AllLedsOff, ledByte(m_scene, true)};
        m_leds.send(bytes, sizeof bytes);
    }
    showHeader();
    m_list.show(m_scene);
}

void SceneMenu::showHeader()
{
    const std::pair state(m_scene, m_status);
    if (m_shown == state) {
        return;
    }
    m_shown = state;
    constexpr const char *Suffixes[] = {"", " saved", " loaded"};
    char status[24];
    std::snprintf(status, sizeof status, "%d%s", m_scene, Suffixes[static_cast<int>(m_status)]);
    setHeader("SCENE", status);
}

void SceneMenu::press(int key)
{
    const int scenes = sceneCount(*g_mxConfig);
    switch (key) {
    case KeyLeft:
        m_scene = m_scene > 1 ? m_scene - 1 : scenes;
        break;
    case KeyRight:
        m_scene = m_scene < scenes ? m_scene + 1 : 1;
        break;
    case KeySave:
        g_mxComm->SaveScene(m_scene);
        m_status = Status::Saved;
        break;
    case KeyLoad:
        g_mxComm->LoadScene(m_scene);
        m_status = Status::Loaded;
        break;
    default:
        if (key <= scenes) {
            m_scene = key;
            m_status = Status::None;
            m_list.restart();
        }
    }
}
