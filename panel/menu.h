#pragma once

#include "infrarednumber.h"
#include "keyleds.h"
#include "menupage.h"
#include "scenemenu.h"
#include "setupmenu.h"
#include "switchmenu.h"
#include "viewmenu.h"

#include <array>

/// The user interface of the front panel, without its thread and its devices: keys and infrared characters
/// go in, texts and pressed states of the windows, LED bytes and operations of the control object come out.
/// For the keypad thread, after `GUI_Task`, with the control object there.
class Menu
{
public:
    /// Labels the pages and brings the SWITCH page to the front.
    explicit Menu(LedWriter leds);

    /// One cycle of 10 ms: shows the current page, then acts on the key (code 1 to 127, 0 for none) or the
    /// infrared character (NUL for none) that has come. The character wins when it completes a command.
    void step(int key, char infrared);

private:
    struct Input {
        int key;
        MenuPage *page; ///< on which the key acts
    };
    Input commandOf(char letter, Input otherwise);
    Input sceneCommand(int key, std::int64_t number, Input otherwise);
    void goTo(MenuPage *page);
    MenuPage *pageAfter(const MenuPage *page) const;

    KeyLeds m_leds;
    SwitchMenu m_switch{m_leds};
    SceneMenu m_scene{m_leds};
    SetupMenu m_setup;
    ViewMenu m_view;
    /// The round on which the menu key leads, from the page where it begins.
    const std::array<MenuPage *, 4> m_round{&m_switch, &m_scene, &m_setup, &m_view};

    MenuPage *m_page = m_round.front(); ///< the current one
    MenuPage *m_shown = nullptr;        ///< the current one of the cycle before
    InfraredNumber m_number;
};
