#pragma once

#include "patchcable.h"
#include "recorder.h"
#include "seriallink.h"
#include "wiretable.h"

#include <memory>
#include <string>
#include <termios.h>

namespace sim
{
/// One wire at work: it moves bytes between the device file and the far end. Not for several threads at once.
class Line
{
public:
    /// Makes the device file below `root`.
    Line(const std::string &root, const WireRow &row, FarEnds &ends);

    const Result &made() const { return m_node->made(); }

    /// To poll for what the program writes; -1 once the far end takes no more.
    int descriptor() const;

    /// Takes from the device what the program has written; the far end gets it later.
    void receive();

    /// Feeds the far end what was received. \return whether there was anything
    bool feed(qint64 nowUs);

    /// As of the far end.
    void idle(qint64 nowUs);

    /// Puts on the wire what the far end has sent, and whatever else fits.
    void flush();

    /// Sends bytes to the program in place of the far end. Only serial ports carry anything that way.
    void send(const std::string &bytes);

    /// What the program wrote since the last call, at most the last MiB.
    std::string takeReceived() { return m_recorder.take(); }

    /// What the program has set on a serial port; all zero for other wires.
    termios attributes() const;

    /// The far end takes no more bytes from now on, so that the line fills up.
    void stick() { m_stuck = true; }

    /// Links one more serial port at `path`, bridged both ways to this one.
    Result plugCable(const std::string &path);

    /// Removes the device file.
    void unplug() { m_node->removeFile(); }

private:
    std::unique_ptr<DeviceNode> m_node;
    SerialLink *m_serial = nullptr; ///< the node, if it is a serial port
    Recorder m_recorder;
    FarEnd *m_farEnd; ///< null while nothing is there
    std::unique_ptr<PatchCable> m_cable;
    bool m_stuck = false;
    std::string m_arrived; ///< what the far end has not got yet
};
} // namespace sim
