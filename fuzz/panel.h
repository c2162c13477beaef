#pragma once

#include "fuzz.h"
#include "keypanel.h"
#include "menu.h"
#include "panelrun.h"

#include <memory>

/// The front panel on the record, anew for each input, stepped by hand: no threads, no devices, the LCD's
/// frame memory, and a key board that knows which LEDs it has.
struct Panel {
    Panel()
    {
        run = 0; // no waiting for the start picture
        GUI_Task();
        menu.reset(new Menu([this](const std::uint8_t *bytes, int n) {
            keys.feed(bytes, static_cast<std::size_t>(n), 0);
            require(n <= 2 * PanelMaxPort);
        }));
    }

    void step(int key, char infrared)
    {
        WM_Exec();
        menu->step(key, infrared);
    }

    sim::KeyPanel keys;
    std::unique_ptr<Menu> menu;
};
