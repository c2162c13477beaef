#pragma once

#include "maplist.h"
#include "menupage.h"

/// The VIEW page: the live routing.
class ViewMenu : public MenuPage
{
public:
    ViewMenu();
    void enter() override;
    void show() override;
    void press(int) override {}

private:
    MapList m_list;
    int m_shownPorts = 0; ///< in the header; 0 when the page has been left
};
