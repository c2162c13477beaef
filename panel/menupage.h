#pragma once

#include "pages.h"

/// One page of the menu: what it shows, and what the keys do on it. It does not know the other pages. For the
/// keypad thread.
class MenuPage
{
public:
    explicit MenuPage(Page page)
        : m_page(page)
    {
    }
    MenuPage(const MenuPage &) = delete;
    MenuPage &operator=(const MenuPage &) = delete;
    virtual ~MenuPage() = default;

    /// Its window.
    Page page() const { return m_page; }

    /// The page has become the current one.
    virtual void enter() = 0;
    /// Brings what is shown up to date; every cycle while the page is the current one.
    virtual void show() = 0;
    /// A key of code 1 to 127 was pressed; not `KeyMenu`, which leaves the page.
    virtual void press(int key) = 0;

private:
    const Page m_page;
};
