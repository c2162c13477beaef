#pragma once

#include "devicenode.h"

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

    /// Queues bytes for the program. What would make more than 1 MiB wait is dropped.
    void send(const std::string &bytes);

    /// Puts on the line what fits. Does not block.
    void flush();

private:
    std::string m_outgoing;
};
} // namespace sim
