#pragma once

#include "wireevents.h"

#include <QtGlobal>
#include <string>
#include <vector>

namespace sim
{
/// Puts the events of a unit into words, one line each, with inputs and outputs counted from 1. It remembers
/// the routing and the buzzer, so that a line tells what has changed. Not for several threads at once.
class EventText
{
public:
    /// Without a line end; empty for an event that tells a person nothing.
    std::string line(const WireEvent &event);

private:
    std::string describe(const SwitchFrame &frame);
    std::string describe(const SpliceFrame &frame) const;
    std::string describe(const PassedFrame &frame) const;
    std::string describe(const LineWrite &write);
    std::string describe(const WireFault &fault) const;

    std::vector<quint16> m_routing; ///< empty before the first switch frame
    int m_buzzer = 0;
};
} // namespace sim
