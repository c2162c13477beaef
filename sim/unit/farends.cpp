#include "farends.h"

#include <variant>

namespace sim
{
namespace
{
constexpr int LcdReset = 1;
constexpr int PanelLight = 2;
constexpr int PanelLight2 = 3;
} // namespace

FarEnds::FarEnds(int ports, const WireObserver &observer)
    : board(ports, observer)
    , lcd(observer)
    , keys(observer)
    , gpio([this, observer](const WireEvent &event) {
        if (const auto *write = std::get_if<LineWrite>(&event); write && write->line == LcdReset) {
            lcd.setResetLine(write->level, write->timeUs);
        }
        if (observer) {
            observer(event);
        }
    })
{
}

bool FarEnds::panelLight() const
{
    return gpio.level(PanelLight) == 1 && gpio.level(PanelLight2) == 1;
}
} // namespace sim
