#pragma once

#include "devicenode.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <termios.h>

namespace sim
{
/// A pty, raw and without echo, with its slave linked at a path for someone to open as a serial port.
class PtyNode : public DeviceNode
{
protected:
    explicit PtyNode(const std::string &path);

    Descriptor m_slave;
};

/// A serial port of the unit and the far end of its line.
class SerialLink : public PtyNode
{
public:
    /// Holds the slave open as well, so that reading never meets a hang-up while the program is away.
    explicit SerialLink(const std::string &path);

    /// What the program has set on its port; all zero when it cannot be read.
    termios attributes() const;

    /// Queues bytes for the program, to go out in order at the first flush() with nowUs >= notBeforeUs. What
    /// would make more than 1 MiB wait is dropped.
    void send(const std::string &bytes, int64_t notBeforeUs = 0);

    /// Puts on the line what is due and fits. Does not block.
    void flush(int64_t nowUs);

private:
    struct Chunk {
        std::string bytes;
        int64_t notBeforeUs;
    };
    std::deque<Chunk> m_outgoing;
    size_t m_outgoingSize = 0;
};

/// A serial port for a person's terminal program. While none has it open, whatever is delivered is lost, as
/// on an unplugged line.
class PatchCable : public PtyNode
{
public:
    explicit PatchCable(const std::string &path);

    /// Hands bytes to the terminal program, as many as fit. Does not block.
    void deliver(const std::string &bytes);
};
} // namespace sim
