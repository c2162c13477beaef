#include "virtualunit.h"

#include "framebuffer.h"
#include "unitsettings.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <ios>
#include <poll.h>
#include <system_error>
#include <utility>
#include <variant>

namespace sim
{
namespace
{
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds turn{20};
constexpr int64_t cutUs = 100'000;
constexpr size_t maxReceived = 1 << 20;

constexpr std::array<const char *, allWires.size()> devices = {
    "/dev/ttymxc0", "/dev/ttymxc1", "/dev/ttymxc2",  "/dev/ttymxc3",
    "/dev/ttymxc4", "/dev/gpiodev", "/dev/spidev2.0"};
constexpr int lcdResetLine = 1;
constexpr std::array<int, 2> panelLightLines = {2, 3};

const char frameBufferFile[] = "/dev/fb0";
const char brightnessFile[] = "/sys/class/backlight/backlight.8/brightness";
const char temperatureFile[] = "/sys/devices/virtual/thermal/thermal_zone0/temp";

/// Ends of commands, starts of frames, and bytes that only a broken line makes.
const std::string noise("\x00\xFF\xEB\xEB\x90\x7F 1x2.\r\x80\xEB\x90\x10\x01\x00", 18);

size_t index(Wire wire)
{
    return static_cast<size_t>(wire);
}

int64_t nowUs()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count();
}

/// Drops what is before the last `size` bytes.
void keepEnd(std::string *bytes, size_t size)
{
    bytes->erase(0, bytes->size() - std::min(bytes->size(), size));
}

bool writeFile(const std::string &path, const std::string &text)
{
    std::ofstream file(path, std::ios::trunc);
    file << text;
    return static_cast<bool>(file.flush());
}
} // namespace

VirtualUnit::VirtualUnit(const std::string &root, int ports, const WireObserver &observer)
    : m_root(root)
    , m_board(ports, observer)
    , m_lcd(observer)
    , m_keys(observer)
    , m_gpio([this, observer](const WireEvent &event) {
        if (const auto *write = std::get_if<LineWrite>(&event); write && write->line == lcdResetLine) {
            m_lcd.setResetLine(write->level, write->timeUs);
        }
        if (observer) {
            observer(event);
        }
    })
{
    makeFiles();
    if (m_error.empty()) {
        makeDevices();
    }
    if (m_error.empty()) {
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
    return m_root + devices[index(wire)];
}

void VirtualUnit::unplug(Wire wire)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_error.empty()) {
        node(wire).removeFile();
    }
}

void VirtualUnit::removeFrameBuffer()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_error.empty()) {
        m_frameBuffer->removeFile();
    }
}

bool VirtualUnit::plugCables()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (size_t i = 0; i < m_cables.size(); ++i) {
        m_cables[i] = std::make_unique<PatchCable>(m_root + "/serial" + std::to_string(i + 1));
        fail(m_cables[i]->error());
    }
    return m_error.empty();
}

void VirtualUnit::inject(Fault fault)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_injected.insert(fault);
    if (SerialLink *link = serialLink(Wire::Matrix); link && fault == Fault::MatrixGarbageFirst) {
        link->send(noise);
    }
}

SwitchingBoard VirtualUnit::board() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_board;
}

GpioLines VirtualUnit::gpio() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_gpio;
}

LcdModule VirtualUnit::lcd() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lcd;
}

KeyPanel VirtualUnit::keys() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_keys;
}

bool VirtualUnit::panelLight() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::all_of(panelLightLines.begin(), panelLightLines.end(),
                       [this](int line) { return m_gpio.level(line) == 1; });
}

void VirtualUnit::pressKey(int key)
{
    sendKey(key, 0x80);
}

void VirtualUnit::releaseKey(int key)
{
    sendKey(key, 0);
}

void VirtualUnit::pressRemote(char key)
{
    send(Wire::Infrared, {key});
}

std::string VirtualUnit::takeReceived(Wire wire)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::string received = std::exchange(m_received[index(wire)], {});
    keepEnd(&received, maxReceived);
    return received;
}

void VirtualUnit::send(Wire wire, const std::string &bytes)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    SerialLink *link = serialLink(wire);
    if (!link) {
        return;
    }
    const bool isControl = wire == Wire::Control0 || wire == Wire::Control1;
    const size_t first = isControl && isInjected(Fault::ControlCutInTwo) ? bytes.size() / 2 : bytes.size();
    link->send(bytes.substr(0, first));
    if (first < bytes.size()) {
        link->send(bytes.substr(first), nowUs() + cutUs);
    }
    link->flush(nowUs());
}

termios VirtualUnit::attributes(Wire wire) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const SerialLink *link = serialLink(wire);
    return link ? link->attributes() : termios{};
}

int VirtualUnit::backlight() const
{
    std::ifstream file(m_root + brightnessFile);
    int level = -1;
    return file >> level ? level : -1;
}

void VirtualUnit::setTemperature(const std::string &text)
{
    writeFile(m_root + temperatureFile, text);
}

bool VirtualUnit::writeSettings(const std::map<std::string, std::string> &values)
{
    return sim::writeSettings(m_root, values);
}

bool VirtualUnit::waitFor(const std::function<bool()> &condition, int timeoutMs) const
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;) {
        std::unique_lock<std::mutex> lock(m_mutex);
        const uint64_t seen = m_arrivals;
        lock.unlock();
        if (condition()) {
            return true;
        }
        const auto now = Clock::now();
        if (now >= deadline) {
            return false;
        }
        lock.lock();
        m_served.wait_until(lock, std::min(deadline, now + turn), [&] { return m_arrivals != seen; });
    }
}

void VirtualUnit::makeFiles()
{
    for (const char *folder :
         {"/home/app/config", "/home/app/data", "/home/www", "/etc", "/dev",
          "/sys/class/backlight/backlight.8", "/sys/devices/virtual/thermal/thermal_zone0"}) {
        std::error_code failure;
        std::filesystem::create_directories(m_root + folder, failure);
        if (failure) {
            return fail("cannot make the folder " + m_root + folder + ": " + failure.message());
        }
    }
    for (const auto &[file, text] :
         {std::pair(brightnessFile, "0\n"), std::pair(temperatureFile, "45123\n")}) {
        if (!writeFile(m_root + file, text)) {
            fail("cannot write " + m_root + file);
        }
    }
}

void VirtualUnit::makeDevices()
{
    for (const Wire wire : allWires) {
        if (index(wire) < serialWireCount) {
            m_serial[index(wire)] = std::make_unique<SerialLink>(path(wire));
        } else {
            m_fifos[index(wire) - serialWireCount] = std::make_unique<FifoNode>(path(wire));
        }
        fail(node(wire).error());
    }
    m_frameBuffer = std::make_unique<MemoryNode>(m_root + frameBufferFile, FrameBufferSize);
    fail(m_frameBuffer->error());
}

/// Keeps the first error; an empty one is none.
void VirtualUnit::fail(const std::string &error)
{
    if (m_error.empty()) {
        m_error = error;
    }
}

void VirtualUnit::run()
{
    while (!m_stop) {
        awaitInput();
        if (serveWires()) {
            m_served.notify_all();
        }
    }
}

/// Waits for the program to write; a person's cable and what is to be sent later can wait for the next turn.
void VirtualUnit::awaitInput()
{
    std::array<pollfd, allWires.size()> inputs;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const Wire wire : allWires) {
            inputs[index(wire)] = {node(wire).descriptor(), POLLIN, 0};
        }
        if (isInjected(Fault::MatrixStuck)) {
            inputs[index(Wire::Matrix)].fd = -1;
        }
    }
    poll(inputs.data(), inputs.size(), static_cast<int>(turn.count()));
}

/// Returns whether anything came.
bool VirtualUnit::serveWires()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    // Taken before reading: what is not there now has truly not come for as long as the board is told.
    const int64_t startUs = nowUs();
    std::array<std::string, allWires.size()> arrived;
    // Backwards, so that what the program did to the GPIO lines before an SPI transfer is there with it.
    for (size_t i = allWires.size(); i-- > 0;) {
        arrived[i] = receive(allWires[i]);
    }
    bool hasArrived = false;
    for (const Wire wire : allWires) {
        if (!arrived[index(wire)].empty()) {
            handle(wire, arrived[index(wire)]);
            hasArrived = true;
        }
    }
    for (size_t i = 0; i < m_cables.size(); ++i) {
        serveCable(i);
    }
    for (const auto &link : m_serial) {
        link->flush(nowUs());
    }
    m_board.idle(startUs);
    m_arrivals += hasArrived;
    return hasArrived;
}

std::string VirtualUnit::receive(Wire wire)
{
    if (wire == Wire::Matrix && isInjected(Fault::MatrixStuck)) {
        return {};
    }
    std::string bytes = node(wire).receive();
    std::string &received = m_received[index(wire)];
    received += bytes;
    if (received.size() > 2 * maxReceived) { // seldom, since it moves the whole
        keepEnd(&received, maxReceived);
    }
    return bytes;
}

void VirtualUnit::handle(Wire wire, const std::string &bytes)
{
    const auto *data = reinterpret_cast<const uint8_t *>(bytes.data());
    switch (wire) {
    case Wire::Matrix:
        m_board.feed(data, bytes.size(), nowUs());
        if (isInjected(Fault::MatrixNoise)) {
            serialLink(wire)->send(noise);
        }
        break;
    case Wire::Control0:
    case Wire::Control1:
        if (const auto &cable = m_cables[index(wire) - index(Wire::Control0)]) {
            cable->deliver(bytes);
        }
        break;
    case Wire::Gpio:
        m_gpio.feed(data, bytes.size(), nowUs());
        break;
    case Wire::Spi:
        m_lcd.feed(data, bytes.size(), nowUs());
        break;
    case Wire::Keys:
        m_keys.feed(data, bytes.size(), nowUs());
        break;
    case Wire::Infrared:
        break;
    }
}

void VirtualUnit::sendKey(int key, int direction)
{
    if (key >= 1 && key <= 127) {
        send(Wire::Keys, {static_cast<char>(key | direction)});
    }
}

void VirtualUnit::serveCable(size_t cable)
{
    if (m_cables[cable]) {
        m_serial[index(Wire::Control0) + cable]->send(m_cables[cable]->receive());
    }
}

DeviceNode &VirtualUnit::node(Wire wire)
{
    if (index(wire) < serialWireCount) {
        return *m_serial[index(wire)];
    }
    return *m_fifos[index(wire) - serialWireCount];
}

/// Null for a wire that is no serial port, and for all when not even the folders could be made.
SerialLink *VirtualUnit::serialLink(Wire wire) const
{
    return index(wire) < serialWireCount ? m_serial[index(wire)].get() : nullptr;
}
} // namespace sim
