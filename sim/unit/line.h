#pragma once

#include "patchcable.h"
#include "recorder.h"
#include "seriallink.h"
#include "wiretable.h"

#include <memory>
#include <set>
#include <string>
#include <termios.h>

namespace sim
{
/// What can go wrong on a serial line without the program being to blame.
enum class Fault {
    GarbageFirst, ///< noise has come before the program reads
    Noise,        ///< noise comes in answer to whatever the program writes
    Stuck,        ///< the far end takes no more bytes, so that the line fills up
    CutInTwo      ///< the second half of what is sent to the program comes 100 ms after the first
};

/// One wire at work: it moves bytes between the device file and the far end. Not for several threads at once.
class Line
{
public:
    /// Makes the device file below `root`.
    Line(const std::string &root, const WireRow &row, FarEnds &ends);

    const Result &made() const { return m_node->made(); }

    /// To poll for what the program writes; -1 on a stuck line.
    int descriptor() const;

    /// Takes from the device what the program has written; the far end gets it later.
    void receive();

    /// Feeds the far end what was received. \return whether there was anything
    bool feed(qint64 nowUs);

    /// As of the far end.
    void idle(qint64 nowUs);

    /// Puts on the wire what the far end has sent, and whatever else is due and fits.
    void flush(qint64 nowUs);

    /// Sends bytes to the program in place of the far end. Only serial ports carry anything that way.
    void send(const std::string &bytes, qint64 nowUs);

    /// What the program wrote since the last call, at most the last MiB.
    std::string takeReceived() { return m_recorder.take(); }

    /// What the program has set on a serial port; all zero for other wires.
    termios attributes() const;

    /// Has this go wrong from now on; nothing does on a wire that is no serial port.
    void inject(Fault fault);

    /// Links one more serial port at `path`, bridged both ways to this one.
    Result plugCable(const std::string &path);

    /// Removes the device file.
    void unplug() { m_node->removeFile(); }

private:
    bool has(Fault fault) const { return m_faults.count(fault) != 0; }

    std::unique_ptr<DeviceNode> m_node;
    SerialLink *m_serial = nullptr; ///< the node, if it is a serial port
    Recorder m_recorder;
    FarEnd *m_farEnd; ///< null while nothing is there
    std::unique_ptr<PatchCable> m_cable;
    std::set<Fault> m_faults;
    std::string m_arrived; ///< what the far end has not got yet
};
} // namespace sim
