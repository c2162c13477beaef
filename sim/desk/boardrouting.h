#pragma once

#include <QMetaType>

#include <cstdint>
#include <vector>

/// Per output the input that it shows, 0-based; 0xFFFF is dark. A signal may carry it to another thread.
using BoardRouting = std::vector<uint16_t>;

Q_DECLARE_METATYPE(BoardRouting)
