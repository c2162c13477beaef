#pragma once

#include "farend.h"
#include "spidevice.h"

#include <QtGlobal>
#include <array>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace sim
{
/// One selection of the LCD by the bus, as it came, good or bad; the time is that of the program's request.
struct LcdTransfer {
    qint64 timeUs;
    std::vector<quint8> bytes;
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
/// in bit 7.
class LcdModule : public FarEnd
{
public:
    static constexpr int Width = 128;
    static constexpr int Height = 64;

    explicit LcdModule(WireObserver observer = {});

    /// Takes the records of the ioctl interposer.
    void feed(const quint8 *bytes, std::size_t size, qint64 nowUs) override;

    /// The reset input, low (0) at first, as the program set it at `atUs`. It is on another wire than the
    /// transfers: this has to be told before those that came later are fed, but may be told before those that
    /// came earlier are.
    void setResetLine(int level, qint64 atUs);

    /// Whether dots show; never in reset, nor until the program has turned the graphic display on after it.
    bool isOn() const;

    /// Whether a person sees a dark dot there; false when the display is off, or for a place outside. Dots
    /// that were never sent show noise.
    bool isLit(int x, int y) const;

    /// How often all 1024 bytes of the graphic RAM have come one after the other, line 0 to line 31, each
    /// from column 0 on.
    quint64 frameCount() const { return m_frameCount; }

    /// The last 130, about two frames.
    std::vector<LcdTransfer> transfers() const { return m_transfers.items(); }

private:
    struct ResetEdge {
        int level;
        qint64 atUs;
    };

    // \return a fault in words, or an empty text
    std::string act(const std::vector<quint8> &transfer);
    std::string instruct(quint8 instruction);
    std::string setAddress(quint8 part);
    std::string write(const std::vector<quint8> &data);

    void take(const SpiTransfer &transfer, qint64 nowUs);
    void applyResetEdge();
    void store(quint8 data);

    SpiDevice m_spi;

    int m_resetLevel = 0;
    std::deque<ResetEdge> m_resetEdges; ///< of which it is not known yet that no earlier transfer will come
    bool m_inReset = true;
    bool m_isExtended = false;
    bool m_isGraphicOn = false;
    std::optional<std::size_t> m_line;    ///< of an address whose column is to come
    std::optional<std::size_t> m_address; ///< byte in the graphic RAM
    std::array<quint8, 1024> m_ram;

    std::size_t m_inFrame = 0; ///< how many bytes have come one after the other
    quint64 m_frameCount = 0;
    History<LcdTransfer> m_transfers{130};
};
} // namespace sim
