#pragma once

#include "keyleds.h"
#include "maplist.h"
#include "menupage.h"

#include <optional>
#include <utility>

/// The SCENE page: shows, saves and loads scenes.
class SceneMenu : public MenuPage
{
public:
    /// Labels the scenes.
    explicit SceneMenu(KeyLeds &leds);
    void enter() override;
    void show() override;
    void press(int key) override;

    /// Chooses the scene (from 1 on) that is shown and that keys act on; what is said of it stays.
    void select(int scene) { m_scene = scene; }

private:
    enum class Status { None, Saved, Loaded };
    void showHeader();

    KeyLeds &m_leds;
    MapList m_list;
    int m_scene = 1;
    Status m_status = Status::None;
    std::optional<std::pair<int, Status>> m_shown; ///< in the header; none when the page has been left
};
