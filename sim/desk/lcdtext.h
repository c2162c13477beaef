#pragma once

#include "lcdmodule.h"

#include <QtGlobal>
#include <string>

namespace sim
{
/// Puts what the LCD shows into text, two rows of dots to the line. Not for several threads at once.
class LcdText
{
public:
    /// Tells what is to be seen now, in milliseconds of any steady clock. \return the picture in UTF-8 once
    /// it has changed since the last one returned, at first a dark display, and has been steady for 100 ms;
    /// else an empty text
    std::string look(const LcdModule &lcd, qint64 nowMs);

private:
    std::string m_seen = blank();
    std::string m_returned = blank();
    qint64 m_seenSinceMs = 0;

    static std::string blank();
};
} // namespace sim
