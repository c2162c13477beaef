#pragma once

/// The pages that the menu key leads through.
enum class Mode { View = 1, Switch, Scene, Setup };

/// One page of the menu: what it shows, and what the keys do on it. For the keypad thread.
class MenuPage
{
public:
    virtual ~MenuPage() = default;

    /// The page has become the current one.
    virtual void enter() = 0;
    /// Brings what is shown up to date; every cycle while the page is the current one.
    virtual void show() = 0;
    /// A key of code 1 to 127 was pressed. \return the page that is to be the current one
    virtual Mode press(int key) = 0;
};
