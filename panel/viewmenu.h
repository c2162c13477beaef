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
    Mode press(int key) override;

private:
    MapList m_list;
};
