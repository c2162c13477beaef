#pragma once

#include "keyleds.h"
#include "maplist.h"
#include "menupage.h"

/// The SCENE page: shows, saves and loads scenes.
class SceneMenu : public MenuPage
{
public:
    /// Labels the scenes.
    explicit SceneMenu(KeyLeds &leds);
    void enter() override;
    void show() override;
    Mode press(int key) override;

    /// Chooses the scene (from 1 on) that is shown and that keys act on; what is said of it stays.
    void select(int scene) { m_scene = scene; }

private:
    enum class Status { None, Saved, Loaded };
    Mode leave() const;

    KeyLeds &m_leds;
    MapList m_list;
    int m_scene = 1;
    Status m_status = Status::None;
};
