#include "lcdmodule.h"

#include "hex.h"

#include <utility>

namespace sim
{
namespace
{
constexpr quint8 InstructionSync = 0xF8;
constexpr quint8 DataSync = 0xFA;
constexpr std::size_t LineBytes = 32;
constexpr std::size_t MaxResetEdges = 4096; ///< more than the FIFO of the GPIO lines holds

/// Noise of power-up: the same for each module, and no pattern that a program would draw.
std::array<quint8, 1024> noise()
{
    std::array<quint8, 1024> bytes{};
    quint32 state = 1;
    for (quint8 &byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<quint8>(state >> 24);
    }
    return bytes;
}
} // namespace

LcdModule::LcdModule(WireObserver observer)
    : FarEnd(std::move(observer))
    , m_ram(noise())
{
}

void LcdModule::feed(const quint8 *bytes, std::size_t size, qint64 nowUs)
{
    for (const SpiTransfer &transfer : m_spi.feed(bytes, size)) {
        take(transfer, nowUs);
    }
}

void LcdModule::setResetLine(int level, qint64 atUs)
{
    if (level == m_resetLevel) {
        return;
    }
    m_resetLevel = level;
    m_resetEdges.push_back({level, atUs});
    if (m_resetEdges.size() > MaxResetEdges) {
        applyResetEdge();
    }
}

bool LcdModule::isOn() const
{
    return m_isGraphicOn && m_resetEdges.empty();
}

bool LcdModule::isLit(int x, int y) const
{
    if (!isOn() || x < 0 || x >= Width || y < 0 || y >= Height) {
        return false;
    }
    const int byte = (y % 32) * 32 + (y / 32) * 16 + x / 8;
    return m_ram[static_cast<std::size_t>(byte)] >> (7 - x % 8) & 1;
}

void LcdModule::take(const SpiTransfer &transfer, qint64 nowUs)
{
    while (!m_resetEdges.empty() && m_resetEdges.front().atUs <= transfer.timeUs) {
        applyResetEdge();
    }
    if (!transfer.bytes.empty()) {
        m_transfers.add({transfer.timeUs, transfer.bytes});
    }
    const std::string text = transfer.fault.empty() ? act(transfer.bytes) : transfer.fault;
    if (!text.empty()) {
        fault(nowUs, text);
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

std::string LcdModule::act(const std::vector<quint8> &transfer)
{
    if (transfer.size() < 2) {
        return "an empty LCD transfer";
    }
    if (transfer[0] != InstructionSync && transfer[0] != DataSync) {
        return "an LCD transfer begins with " + hex(transfer[0]);
    }
    if (transfer.size() % 2 == 0) {
        return "an LCD transfer ends within a byte";
    }
    std::vector<quint8> bytes;
    for (std::size_t i = 1; i < transfer.size(); i += 2) {
        if ((transfer[i] | transfer[i + 1]) & 0x0F) {
            return "an LCD transfer with the halves " + hex(transfer[i]) + " " + hex(transfer[i + 1]);
        }
        bytes.push_back(static_cast<quint8>(transfer[i] | transfer[i + 1] >> 4));
    }
    if (m_inReset) {
        return "an LCD transfer during reset";
    }
    if (transfer[0] == DataSync) {
        return write(bytes);
    }
    std::string fault;
    for (std::size_t i = 0; i < bytes.size() && fault.empty(); ++i) {
        fault = instruct(bytes[i]);
    }
    return fault;
}

std::string LcdModule::instruct(quint8 instruction)
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

std::string LcdModule::setAddress(quint8 part)
{
    m_address.reset();
    if (!m_line) {
        if (part > 31) {
            return "an LCD address in line " + std::to_string(part);
        }
        m_line = part;
        return {};
    }
    const std::size_t line = *m_line;
    m_line.reset();
    if (part > 15) {
        return "an LCD address in column " + std::to_string(part);
    }
    m_address = line * LineBytes + std::size_t(part) * 2;
    return {};
}

std::string LcdModule::write(const std::vector<quint8> &data)
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
    for (const quint8 byte : data) {
        store(byte);
    }
    return {};
}

void LcdModule::store(quint8 data)
{
    const std::size_t at = *m_address;
    m_ram[at] = data;
    m_address = at / LineBytes * LineBytes + (at + 1) % LineBytes;

    m_inFrame = at == m_inFrame ? m_inFrame + 1 : at == 0 ? 1 : 0;
    if (m_inFrame == m_ram.size()) {
        ++m_frameCount;
        m_inFrame = 0;
    }
}
} // namespace sim
