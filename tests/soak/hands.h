#pragma once

#include "load.h"

/// Someone in front of the unit, who does one thing after another, about one a second, and says in `Load`
/// what that switches.
class Hands
{
public:
    virtual ~Hands() = default;
    /// Waits until what is in front of them is ready. \return whether it is
    virtual bool ready(TestUnit &unit) = 0;
    virtual void act(TestUnit &unit, Load &load) = 0;

protected:
    /// A touch or a key puts the selected input on its output, or takes it off there.
    static void toggle(Load &load, int output, int input)
    {
        int &shown = load.routing[size_t(output - 1)];
        shown = shown == input ? 0 : input;
    }
    int m_turn = 0;
    int m_input = 1;
    int m_output = 1;
};

/// Keys and remote of a front panel, whose page is SWITCH.
class PanelHands : public Hands
{
public:
    bool ready(TestUnit &unit) override;
    void act(TestUnit &unit, Load &load) override;
};

/// A finger on the touchscreen of the display `DISPLAY`.
class TouchHands : public Hands
{
public:
    /// Unlocks it.
    bool ready(TestUnit &unit) override;
    void act(TestUnit &unit, Load &load) override;
};
