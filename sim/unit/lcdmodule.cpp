#include "lcdmodule.h"

#include "hex.h"

#include <utility>

namespace sim
{
namespace
{
constexpr uint8_t instructionSync = 0xF8;
constexpr uint8_t dataSync = 0xFA;
constexpr size_t lineBytes = 32;
constexpr size_t maxResetEdges = 4096; ///< more than the FIFO of the GPIO lines holds

/// Noise of power-up: the same for each module, and no pattern that a program would draw.
std::array<uint8_t, 1024> noise()
{
    std::array<uint8_t, 1024> bytes{};
    uint32_t state = 1;
    for (uint8_t &byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<uint8_t>(state >> 24);
    }
    return bytes;
}
} // namespace

LcdModule::LcdModule(WireObserver observer)
    : m_observer(std::move(observer))
    , m_ram(noise())
{
}

void LcdModule::feed(const uint8_t *bytes, size_t n, int64_t nowUs)
{
    for (const SpiTransfer &transfer : m_spi.feed(bytes, n)) {
        take(transfer, nowUs);
    }
}

void LcdModule::setResetLine(int level, int64_t atUs)
{
    if (level == m_resetLevel) {
        return;
    }
    m_resetLevel = level;
    m_resetEdges.push_back({level, atUs});
    if (m_resetEdges.size() > maxResetEdges) {
        applyResetEdge();
    }
}

bool LcdModule::isOn() const
{
    return m_isGraphicOn && m_resetEdges.empty();
}

bool LcdModule::isLit(int x, int y) const
{
    if (!isOn() || x < 0 || x >= width || y < 0 || y >= height) {
        return false;
    }
    const int byte = (y % 32) * 32 + (y / 32) * 16 + x / 8;
    return m_ram[static_cast<size_t>(byte)] >> (7 - x % 8) & 1;
}

void LcdModule::take(const SpiTransfer &transfer, int64_t nowUs)
{
    while (!m_resetEdges.empty() && m_resetEdges.front().atUs <= transfer.timeUs) {
        applyResetEdge();
    }
    if (!transfer.bytes.empty()) {
        m_transfers.add({transfer.timeUs, transfer.bytes});
    }
    const std::string text = transfer.fault.empty() ? act(transfer.bytes) : transfer.fault;
    if (text.empty()) {
        return;
    }
    const WireFault fault{nowUs, text};
    m_faults.add(fault);
    if (m_observer) {
        m_observer(fault);
    }
}

void LcdModule::applyResetEdge()
{
    m_inReset = m_resetEdges.front().level == 0;
    m_resetEdges.pop_front();
    m_isExtended = false;
    m_isGraphicOn = false;
    m_line.reset();
    m_address.reset();
    m_inFrame = 0;
}

std::string LcdModule::act(const std::vector<uint8_t> &transfer)
{
    if (transfer.size() < 2) {
        return "an empty LCD transfer";
    }
    if (transfer[0] != instructionSync && transfer[0] != dataSync) {
        return "an LCD transfer begins with " + hex(transfer[0]);
    }
    if (transfer.size() % 2 == 0) {
        return "an LCD transfer ends within a byte";
    }
    std::vector<uint8_t> bytes;
    for (size_t i = 1; i < transfer.size(); i += 2) {
        if ((transfer[i] | transfer[i + 1]) & 0x0F) {
            return "an LCD transfer with the halves " + hex(transfer[i]) + " " + hex(transfer[i + 1]);
        }
        bytes.push_back(static_cast<uint8_t>(transfer[i] | transfer[i + 1] >> 4));
    }
    if (m_inReset) {
        return "an LCD transfer during reset";
    }
    if (transfer[0] == dataSync) {
        return write(bytes);
    }
    std::string fault;
    for (size_t i = 0; i < bytes.size() && fault.empty(); ++i) {
        fault = instruct(bytes[i]);
    }
    return fault;
}

std::string LcdModule::instruct(uint8_t instruction)
{
    if (m_line && !(instruction & 0x80)) {
        m_line.reset();
        return "LCD instruction " + hex(instruction) + " in place of the address's column";
    }
    if ((instruction & 0xE0) == 0x20) {
        m_isExtended = instruction & 0x04;
        m_isGraphicOn = instruction & 0x02;
        return {};
    }
    if (!m_isExtended) {
        return "LCD instruction " + hex(instruction) + ", but not the extended set";
    }
    if (instruction & 0x80) {
        return setAddress(instruction & 0x7F);
    }
    if ((instruction & 0x40) == 0) {
        return "an unknown LCD instruction " + hex(instruction);
    }
    return instruction == 0x40 ? "" : "the LCD is scrolled by " + std::to_string(instruction & 0x3F);
}

std::string LcdModule::setAddress(uint8_t part)
{
    m_address.reset();
    if (!m_line) {
        if (part > 31) {
            return "an LCD address in line " + std::to_string(part);
        }
        m_line = part;
        return {};
    }
    const size_t line = *m_line;
    m_line.reset();
    if (part > 15) {
        return "an LCD address in column " + std::to_string(part);
    }
    m_address = line * lineBytes + size_t(part) * 2;
    return {};
}

std::string LcdModule::write(const std::vector<uint8_t> &data)
{
    if (!m_isExtended) {
        return "LCD data, but not the extended set";
    }
    if (data.size() % 2 != 0) {
        return "LCD data of " + std::to_string(data.size()) + " bytes";
    }
    if (!m_address) {
        m_line.reset();
        return "LCD data without an address";
    }
    for (const uint8_t byte : data) {
        store(byte);
    }
    return {};
}

void LcdModule::store(uint8_t data)
{
    const size_t at = *m_address;
    m_ram[at] = data;
    m_address = at / lineBytes * lineBytes + (at + 1) % lineBytes;

    m_inFrame = at == m_inFrame ? m_inFrame + 1 : at == 0 ? 1 : 0;
    if (m_inFrame == m_ram.size()) {
        ++m_frameCount;
        m_inFrame = 0;
    }
}
} // namespace sim
