#include "virtualunit.h"

#include "framebuffer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <poll.h>

namespace sim
{
namespace
{
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds Turn{20};
constexpr char FrameBufferFile[] = "/dev/fb0";

qint64 nowUs()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count();
}

std::size_t index(Wire wire)
{
    return static_cast<std::size_t>(wire);
}

/// The wires that a person can plug a cable into.
std::vector<Wire> openWires()
{
    std::vector<Wire> wires;
    for (const WireRow &row : Wires) {
        if (row.farEnd == noFarEnd) {
            wires.push_back(row.wire);
        }
    }
    return wires;
}
} // namespace

VirtualUnit::VirtualUnit(const std::string &root, int ports, const WireObserver &observer)
    : m_root(root)
    , m_files(root)
    , m_farEnds(ports, observer)
{
    m_made = m_files.make();
    makeDevices();
    if (m_made.isDone()) {
        m_thread = std::thread(&VirtualUnit::run, this);
    }
}

VirtualUnit::~VirtualUnit()
{
    m_stop = true;
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

std::string VirtualUnit::path(Wire wire) const
{
    return m_root + Wires[index(wire)].device;
}

void VirtualUnit::unplug(Wire wire)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lines[index(wire)].unplug();
}

void VirtualUnit::removeFrameBuffer()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_frameBuffer->removeFile();
}

Result VirtualUnit::plugCables()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::vector<std::string> names = cableNames();
    std::size_t next = 0;
    Result plugged;
    for (const Wire wire : openWires()) {
        const std::string path = m_root + "/" + names[next++];
        plugged = plugged.then([&] { return m_lines[index(wire)].plugCable(path); });
    }
    return plugged;
}

std::vector<std::string> VirtualUnit::cableNames()
{
    std::vector<std::string> names;
    while (names.size() < openWires().size()) {
        names.push_back("serial" + std::to_string(names.size() + 1));
    }
    return names;
}

void VirtualUnit::stick(Wire wire)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lines[index(wire)].stick();
}

SwitchingBoard VirtualUnit::board() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_farEnds.board;
}

GpioLines VirtualUnit::gpio() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_farEnds.gpio;
}

LcdModule VirtualUnit::lcd() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_farEnds.lcd;
}

KeyPanel VirtualUnit::keys() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_farEnds.keys;
}

bool VirtualUnit::panelLight() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_farEnds.panelLight();
}

void VirtualUnit::pressKey(int key)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_farEnds.keys.press(key);
    m_lines[index(Wire::Keys)].flush();
}

void VirtualUnit::releaseKey(int key)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_farEnds.keys.release(key);
    m_lines[index(Wire::Keys)].flush();
}

void VirtualUnit::pressRemote(char key)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_farEnds.remote.press(key);
    m_lines[index(Wire::Infrared)].flush();
}

std::string VirtualUnit::takeReceived(Wire wire)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lines[index(wire)].takeReceived();
}

void VirtualUnit::send(Wire wire, const std::string &bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Line &line = m_lines[index(wire)];
    line.send(bytes);
    line.flush();
}

termios VirtualUnit::attributes(Wire wire) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lines[index(wire)].attributes();
}

bool VirtualUnit::waitFor(const std::function<bool()> &condition, int timeoutMs) const
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        std::unique_lock<std::mutex> lock(m_mutex);
        const quint64 seen = m_arrivals;
        lock.unlock();
        if (condition()) {
            return true;
        }
        const auto now = Clock::now();
        if (now >= deadline) {
            return false;
        }
        lock.lock();
        m_served.wait_until(lock, std::min(deadline, now + Turn), [&] { return m_arrivals != seen; });
    }
}

/// Makes all of them even if one cannot be made, so that each wire has its line.
void VirtualUnit::makeDevices()
{
    for (const WireRow &row : Wires) {
        m_lines.emplace_back(m_root, row, m_farEnds);
        m_made = m_made.then([this] { return m_lines.back().made(); });
    }
    m_frameBuffer = std::make_unique<MemoryNode>(m_root + FrameBufferFile, FrameBufferSize);
    m_made = m_made.then([this] { return m_frameBuffer->made(); });
}

void VirtualUnit::run()
{
    while (!m_stop) {
        awaitInput();
        if (serveLines()) {
            m_served.notify_all();
        }
    }
}

/// Waits for the program to write; a person's cable and what is to be sent later can wait for the next turn.
void VirtualUnit::awaitInput()
{
    std::array<pollfd, Wires.size()> inputs;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            inputs[i] = {m_lines[i].descriptor(), POLLIN, 0};
        }
    }
    ::poll(inputs.data(), inputs.size(), static_cast<int>(Turn.count()));
}

/// \return whether anything came
bool VirtualUnit::serveLines()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    // Taken before reading: what is not there now has truly not come for as long as the far ends are told.
    const qint64 startUs = nowUs();
    // Backwards, so that what the program did to the GPIO lines before an SPI transfer is there with it.
    std::for_each(m_lines.rbegin(), m_lines.rend(), [](Line &line) { line.receive(); });
    bool hasArrived = false;
    for (Line &line : m_lines) {
        hasArrived = line.feed(nowUs()) || hasArrived;
        line.flush();
        line.idle(startUs);
    }
    m_arrivals += hasArrived;
    return hasArrived;
}
} // namespace sim
