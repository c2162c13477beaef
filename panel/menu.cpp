#include "menu.h"

#include "keys.h"
#include "mxshm.h"
#include "panelports.h"

#include <algorithm>

namespace
{
constexpr int KeypadWithSetup = 1; ///< the `keypad` setting with which there is a SETUP page

bool isOffered(Page page)
{
    return page != SetupPage || g_mxConfig->keypad == KeypadWithSetup;
}
} // namespace

Menu::Menu(LedWriter leds)
    : m_leds(std::move(leds))
{
    bringToFront(m_page->page());
}

void Menu::step(int key, char infrared)
{
    if (m_page != m_shown) {
        m_leds.allOff();
        m_page->enter();
    }
    m_page->show();
    m_shown = m_page;

    const Input input = commandOf(infrared, {key, m_page});
    if (input.key == KeyMenu) {
        goTo(pageAfter(input.page));
        return;
    }
    goTo(input.page);
    if (input.key >= 1) {
        m_page->press(input.key);
    }
}

void Menu::goTo(MenuPage *page)
{
    if (page != m_page) {
        m_page = page;
        bringToFront(page->page());
    }
}

/// A page that is not offered ends the round: the pages behind it are out of reach.
MenuPage *Menu::pageAfter(const MenuPage *page) const
{
    const auto next = std::find(m_round.begin(), m_round.end(), page) + 1;
    return next != m_round.end() && isOffered((*next)->page()) ? *next : m_round.front();
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
        return {port, &m_switch};
    }
    return m_page == &m_switch ? Input{KeyOutputs + port, &m_switch} : otherwise;
}

Menu::Input Menu::sceneCommand(int key, std::int64_t number, Input otherwise)
{
    if (number < 1 || number > sceneCount(*g_mxConfig)) {
        return otherwise;
    }
    m_scene.select(static_cast<int>(number));
    return {key, &m_scene};
}
