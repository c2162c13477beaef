#pragma once

#include "line.h"
#include "unitfiles.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace sim
{
/// The hardware around the program, below a folder that the program takes for the root of the file system:
/// the files and devices that it expects, and the far ends of its wires, served by a thread of the object's
/// own.
///
/// Every operation may be called on any thread and returns at once, unless it says otherwise.
class VirtualUnit
{
public:
    /// Makes the files below `root` and starts to serve the wires. Files that a unit keeps (home, etc) stay
    /// as they are; the devices and the files of the kernel are made anew. `ports` is the size of the
    /// board, 2..160. The observer hears of the events of all far ends on the unit's thread; it must not call
    /// the unit.
    VirtualUnit(const std::string &root, int ports, const WireObserver &observer = {});

    /// Stops serving and takes the device files away; the other files stay.
    ~VirtualUnit();

    VirtualUnit(const VirtualUnit &) = delete;
    VirtualUnit &operator=(const VirtualUnit &) = delete;

    /// Whether it could be made; a unit that could not serves nothing.
    const Result &made() const { return m_made; }

    const UnitFiles &files() const { return m_files; }

    /// Where the program finds this device.
    std::string path(Wire wire) const;

    /// Removes the device file, as if the device were missing. To be called before the program starts.
    void unplug(Wire wire);

    /// The same for the frame buffer "/dev/fb0", a file that the program may map: the interposer has it pass
    /// for one of 1024x600 dots in RGB565.
    void removeFrameBuffer();

    /// Links one more serial port below root for each control port, bridged to it both ways, for terminal
    /// programs. To be called at most once, on a unit that could be made.
    Result plugCables();

    /// The names of these links, from control port 0 on: "serial1", "serial2".
    static std::vector<std::string> cableNames();

    /// The far end of this wire takes no more bytes from now on, so that the wire fills up. The program need
    /// not have started.
    void stick(Wire wire);

    /// Snapshots of the far ends.
    SwitchingBoard board() const;
    GpioLines gpio() const;
    LcdModule lcd() const;
    KeyPanel keys() const;

    /// Whether the light of the front panel is on.
    bool panelLight() const;

    /// A key of the front panel goes down, or up; a number that is not 1..127 does nothing.
    void pressKey(int key);
    void releaseKey(int key);

    /// Someone presses a key of the remote control that stands for this character.
    void pressRemote(char key);

    /// What the program wrote to this device since the last call, at most the last MiB. For Gpio and Spi
    /// these are the records of the ioctl interposer.
    std::string takeReceived(Wire wire);

    /// Sends bytes to the program over a serial port; the other wires carry nothing that way.
    void send(Wire wire, const std::string &bytes);

    /// What the program has set on a serial port; all zero for the other wires.
    termios attributes(Wire wire) const;

    /// Waits until the condition holds, at most `timeoutMs`. It is tried at once, upon whatever comes over a
    /// wire, and every 20 ms; it may call the unit. \return whether it holds
    bool waitFor(const std::function<bool()> &condition, int timeoutMs) const;

private:
    void makeDevices();
    void run();
    void awaitInput();
    bool serveLines();

    const std::string m_root;
    const UnitFiles m_files;
    Result m_made;

    mutable std::mutex m_mutex; ///< guards what follows
    mutable std::condition_variable m_served;
    quint64 m_arrivals = 0; ///< how often something came over a wire
    FarEnds m_farEnds;
    std::vector<Line> m_lines; ///< in the order of `Wires`
    std::unique_ptr<MemoryNode> m_frameBuffer;

    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};
} // namespace sim
