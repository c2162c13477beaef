#pragma once

#include <QMetaType>
#include <vector>

namespace sim
{
/// Per output the input that it shows, 0-based; 0xFFFF is dark. A signal may carry it to another thread.
using BoardRouting = std::vector<quint16>;
} // namespace sim

Q_DECLARE_METATYPE(sim::BoardRouting)
