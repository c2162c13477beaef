#pragma once

#include "keyleds.h"
#include "menupage.h"
#include "panelports.h"

#include <optional>
#include <tuple>

/// The SWITCH page: chooses an input and switches it to outputs.
class SwitchMenu : public MenuPage
{
public:
    /// Labels the outputs.
    explicit SwitchMenu(KeyLeds &leds);
    void enter() override;
    void show() override;
    void press(int key) override;

private:
    bool isRouted(int output) const;
    void sendLeds(int ports);
    void toggle(int output);

    using State = std::tuple<int, int, PanelMap>;

    KeyLeds &m_leds;
    int m_input = 0;              ///< selected, 0-based
    std::optional<State> m_shown; ///< ports, selected input and live map; none when the page has been left
};
