#pragma once

#include "history.h"
#include "spidevice.h"
#include "wireevents.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace sim
{
/// One selection of the LCD by the bus, as it came, good or bad; the time is that of the program's request.
struct LcdTransfer {
    int64_t timeUs;
    std::vector<uint8_t> bytes;
};

/// The front panel's LCD of 128x64 dots with its controller, an ST7920 or alike, on the SPI bus. It is
/// stricter than the device: whatever is not one of these is a recorded fault, and the transfer has no effect
/// from there on.
///
///   transfer     synchronisation byte, then two bytes for each: its high nibble, its low nibble << 4
///   F8           instructions
///     001x xRGx  function set, R: extended instruction set, G: graphic display on; the others need R
///     40         no scrolling
///     80|line    graphic RAM address, in two instructions: line 0..31, ...
///     80|column  ... then column 0..15, of 16 dots
///   FA           display data, from the address on, an even number of bytes; stays in its line
///
/// A line of the graphic RAM has the dots of display row `line`, then those of row `line` + 32, the leftmost
/// in bit 7. Not for several threads at once. A copy is a snapshot.
class LcdModule
{
public:
    static constexpr int width = 128;
    static constexpr int height = 64;

    explicit LcdModule(WireObserver observer = {});

    /// Takes bytes off the device, read at `nowUs`: the records of the ioctl interposer, in pieces of any
    /// size.
    void feed(const uint8_t *bytes, size_t n, int64_t nowUs);

    /// The reset input, low (0) at first, as the program set it at `atUs`. It is on another wire than the
    /// transfers: this has to be told before those that came later are fed, but may be told before those that
    /// came earlier are.
    void setResetLine(int level, int64_t atUs);

    /// Whether dots show; never in reset, nor until the program has turned the graphic display on after it.
    bool isOn() const;

    /// Whether a person sees a dark dot there; false when the display is off, or for a place outside. Dots
    /// that were never sent show noise.
    bool isLit(int x, int y) const;

    /// How often all 1024 bytes of the graphic RAM have come one after the other, line 0 to line 31, each
    /// from column 0 on.
    uint64_t frameCount() const { return m_frameCount; }

    /// The last 130, about two frames.
    std::vector<LcdTransfer> transfers() const { return m_transfers.items(); }
    std::vector<WireFault> faults() const { return m_faults.items(); }

private:
    struct ResetEdge {
        int level;
        int64_t atUs;
    };

    // Each returns a fault in words, or an empty text.
    std::string act(const std::vector<uint8_t> &transfer);
    std::string instruct(uint8_t instruction);
    std::string setAddress(uint8_t part);
    std::string write(const std::vector<uint8_t> &data);

    void take(const SpiTransfer &transfer, int64_t nowUs);
    void applyResetEdge();
    void store(uint8_t data);

    WireObserver m_observer;
    SpiDevice m_spi;

    int m_resetLevel = 0;
    std::deque<ResetEdge> m_resetEdges; ///< of which it is not known yet that no earlier transfer will come
    bool m_inReset = true;
    bool m_isExtended = false;
    bool m_isGraphicOn = false;
    std::optional<size_t> m_line;    ///< of an address whose column is to come
    std::optional<size_t> m_address; ///< byte in the graphic RAM
    std::array<uint8_t, 1024> m_ram;

    size_t m_inFrame = 0; ///< how many bytes have come one after the other
    uint64_t m_frameCount = 0;
    History<LcdTransfer> m_transfers{130};
    History<WireFault> m_faults;
};
} // namespace sim
