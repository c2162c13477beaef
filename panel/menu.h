#pragma once

#include "infrarednumber.h"
#include "keyleds.h"
#include "menupage.h"
#include "scenemenu.h"
#include "setupmenu.h"
#include "switchmenu.h"
#include "viewmenu.h"

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
        Mode mode; ///< on whose page the key acts
    };
    Input commandOf(char letter, Input otherwise);
    Input sceneCommand(int key, std::int64_t number, Input otherwise);
    MenuPage &pageOf(Mode mode);

    KeyLeds m_leds;
    ViewMenu m_view;
    SwitchMenu m_switch;
    SceneMenu m_scene;
    SetupMenu m_setup;
    Mode m_mode = Mode::Switch;
    Mode m_previous{}; ///< of the cycle before; none at first
    InfraredNumber m_number;
};
