#include "menu.h"

#include "keys.h"
#include "mxshm.h"
#include "pages.h"

Menu::Menu(LedWriter leds)
    : m_leds(std::move(leds))
    , m_switch(m_leds)
    , m_scene(m_leds)
{
    bringToFront(SwitchPage);
}

void Menu::step(int key, char infrared)
{
    if (m_mode != m_previous) {
        m_leds.allOff();
        pageOf(m_mode).enter();
    }
    pageOf(m_mode).show();
    m_previous = m_mode;

    const Input input = commandOf(infrared, {key, m_mode});
    m_mode = input.key >= 1 ? pageOf(input.mode).press(input.key) : input.mode;
}

/// Letters of the remote act on the number before them; where they do nothing, the key board's key stands.
Menu::Input Menu::commandOf(char letter, Input otherwise)
{
    if (letter >= '0' && letter <= '9') {
        m_number.add(letter);
        return otherwise;
    }
    if (letter != 'X' && letter != 'N' && letter != 'R' && letter != 'S') {
        return otherwise;
    }
    const std::int64_t number = m_number.take();
    if (letter == 'R' || letter == 'S') {
        return sceneCommand(letter == 'R' ? KeyLoad : KeySave, number, otherwise);
    }
    if (number < 1 || number > panelPorts()) {
        return otherwise;
    }
    const int port = static_cast<int>(number);
    if (letter == 'X') {
        bringToFront(SwitchPage);
        return {port, Mode::Switch};
    }
    return m_mode == Mode::Switch ? Input{KeyOutputs + port, Mode::Switch} : otherwise;
}

Menu::Input Menu::sceneCommand(int key, std::int64_t number, Input otherwise)
{
    if (number < 1 || number > sceneCount(*g_mxConfig)) {
        return otherwise;
    }
    bringToFront(ScenePage);
    m_scene.select(static_cast<int>(number));
    return {key, Mode::Scene};
}

MenuPage &Menu::pageOf(Mode mode)
{
    switch (mode) {
    case Mode::View:
        return m_view;
    case Mode::Scene:
        return m_scene;
    case Mode::Setup:
        return m_setup;
    case Mode::Switch:
        break;
    }
    return m_switch;
}
