#pragma once

#include "pages.h"
#include "panelports.h"

#include <optional>
#include <tuple>

/// A routing map on the buttons of the VIEW or the SCENE page, as "input>output". More outputs than buttons
/// take turns: the first 20, then the others. For the keypad thread.
class MapList
{
public:
    /// What happens to the buttons that a matrix of up to 20 ports leaves over.
    enum class Rest { Keep, Clear };

    /// `cycles`: how long each half is shown.
    MapList(Page page, int cycles, Rest rest);

    /// Begins with the first half again.
    void restart();
    /// Shows the map of this slot of the record (0 is the live one). Nothing above 40 ports.
    void show(int slot);

private:
    /// The first output, ports and map.
    using State = std::tuple<int, int, PanelMap>;
    void show(const State &state) const;

    const Page m_page;
    const int m_period;
    const Rest m_rest;
    int m_cycles = 0;
    bool m_secondHalf = false;
    std::optional<State> m_shown; ///< on the buttons, which nobody else writes on
};
