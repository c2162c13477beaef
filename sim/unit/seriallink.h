#pragma once

#include "devicenode.h"

#include <QtGlobal>
#include <cstddef>
#include <deque>
#include <string>
#include <termios.h>

namespace sim
{
/// A serial port of the unit, as its line's far end has it.
class SerialLink : public PtyNode
{
public:
    /// Holds the slave open as well, so that reading never meets a hang-up while the program is away.
    explicit SerialLink(const std::string &path);

    /// What the program has set on its port; all zero when it cannot be read.
    termios attributes() const;

    /// Queues bytes for the program, to go out in order at the first flush() with nowUs >= notBeforeUs. What
    /// would make more than 1 MiB wait is dropped.
    void send(const std::string &bytes, qint64 notBeforeUs = 0);

    /// Puts on the line what is due and fits. Does not block.
    void flush(qint64 nowUs);

private:
    struct Chunk {
        std::string bytes;
        qint64 notBeforeUs;
    };
    std::deque<Chunk> m_outgoing;
    std::size_t m_outgoingSize = 0;
};
} // namespace sim
