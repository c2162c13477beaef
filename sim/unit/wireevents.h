#pragma once

#include <QtGlobal>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace sim
{
// What the far ends of the wires record. Times are CLOCK_MONOTONIC microseconds, taken when the far end read
// the bytes, so never earlier than they were written.

/// A switch frame that came twice, as it has to; the time is that of the first byte of the first copy.
struct SwitchFrame {
    qint64 timeUs;
    std::vector<quint16> inputs; ///< one per output, 0-based; 0xFFFF is dark
};

/// A splice frame; the time is that of its first byte.
struct SpliceFrame {
    qint64 timeUs;
    std::vector<quint32> words; ///< one per output
};

/// A binary frame that a client had passed through to the board, as it came; the time is that of its first
/// byte.
struct PassedFrame {
    qint64 timeUs;
    std::vector<quint8> bytes;
};

/// One write of a GPIO line, whether or not it changed the level; the time is that of the program's request.
struct LineWrite {
    qint64 timeUs;
    int line;  ///< 0..31
    int level; ///< 0 or 1
};

/// Something that must not come over this wire, in words.
struct WireFault {
    qint64 timeUs;
    std::string text;
};

using WireEvent = std::variant<SwitchFrame, SpliceFrame, PassedFrame, LineWrite, WireFault>;

/// Hears of each event at once, on the thread that feeds the far end.
using WireObserver = std::function<void(const WireEvent &)>;
} // namespace sim
