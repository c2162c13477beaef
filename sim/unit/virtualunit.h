#pragma once

#include "gpiolines.h"
#include "keypanel.h"
#include "lcdmodule.h"
#include "seriallink.h"
#include "switchingboard.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>

namespace sim
{
/// The device files of the unit. The serial ports come first.
enum class Wire { Infrared, Keys, Matrix, Control0, Control1, Gpio, Spi };

constexpr std::array<Wire, 7> allWires = {Wire::Infrared, Wire::Keys, Wire::Matrix, Wire::Control0,
                                          Wire::Control1, Wire::Gpio, Wire::Spi};
constexpr size_t serialWireCount = 5;

/// What can go wrong at the far end of a wire without the program being to blame.
enum class Fault {
    MatrixGarbageFirst, ///< noise has come from the board before the program reads
    MatrixNoise,        ///< the board answers whatever it gets with noise
    MatrixStuck,        ///< the board takes no more bytes, so that the line fills up
    ControlCutInTwo     ///< the second half of what is sent to a control port comes 100 ms after the first
};

constexpr std::array<Fault, 4> allFaults = {Fault::MatrixGarbageFirst, Fault::MatrixNoise, Fault::MatrixStuck,
                                            Fault::ControlCutInTwo};

/// The hardware around the program, below a folder that the program takes for the root of the file system:
/// the files and devices it expects, and the far ends of its wires, served by a thread of the object's own.
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

    /// Empty when all is well, else one line that says why the unit cannot be used; it then serves nothing.
    const std::string &error() const { return m_error; }

    /// Where the program finds this device.
    std::string path(Wire wire) const;

    /// Removes the device file, as if the device were missing. To be called before the program starts.
    void unplug(Wire wire);

    /// The same for the frame buffer "/dev/fb0", a file that the program may map: the interposer has it pass
    /// for one of 1024x600 dots in RGB565.
    void removeFrameBuffer();

    /// Links two more serial ports below root, "serial1" and "serial2", for terminal programs: they are
    /// bridged both ways to control ports 0 and 1. False, with error() set, when they cannot be made. To be
    /// called at most once, by the thread that made the unit.
    bool plugCables();

    /// Has this go wrong from now on; the program need not have started.
    void inject(Fault fault);

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

    /// The brightness that the program set last, 0 at first; -1 when it cannot be read.
    int backlight() const;

    /// What the thermometer's file holds from now on, such as "45123\n".
    void setTemperature(const std::string &text);

    /// Sets keys of the settings file, such as {"system/port", "16"}, and keeps the others. False when the
    /// file cannot be written.
    bool writeSettings(const std::map<std::string, std::string> &values);

    /// Waits until the condition holds, at most `timeoutMs`, and returns whether it does. It is tried at
    /// once, upon whatever comes over a wire, and every 20 ms; it may call the unit.
    bool waitFor(const std::function<bool()> &condition, int timeoutMs) const;

private:
    void makeFiles();
    void makeDevices();
    void fail(const std::string &error);
    void run();
    void awaitInput();
    bool serveWires();
    std::string receive(Wire wire);
    void serveCable(size_t cable);
    void handle(Wire wire, const std::string &bytes);
    void sendKey(int key, int direction);
    DeviceNode &node(Wire wire);
    SerialLink *serialLink(Wire wire) const;
    bool isInjected(Fault fault) const { return m_injected.count(fault) != 0; }

    const std::string m_root;
    std::string m_error;

    mutable std::mutex m_mutex; ///< guards what follows
    mutable std::condition_variable m_served;
    uint64_t m_arrivals = 0; ///< how often something came over a wire
    std::array<std::unique_ptr<SerialLink>, serialWireCount> m_serial;
    std::array<std::unique_ptr<FifoNode>, allWires.size() - serialWireCount> m_fifos;
    std::array<std::unique_ptr<PatchCable>, 2> m_cables; ///< at control ports 0 and 1, when plugged in
    std::unique_ptr<MemoryNode> m_frameBuffer;
    std::array<std::string, allWires.size()> m_received;
    std::set<Fault> m_injected;
    SwitchingBoard m_board;
    LcdModule m_lcd;
    KeyPanel m_keys;
    GpioLines m_gpio;

    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};
} // namespace sim
