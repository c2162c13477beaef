#pragma once

#include "history.h"
#include "wireevents.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sim
{
/// The switching board as seen from the matrix link. It is stricter than the device: whatever is not exactly
/// one of these frames, or comes too early, is a recorded fault.
///
///   frame    bytes                                              rule
///   switch   "F00C0000", 4 upper-case hex digits per output,    twice, back to back, the same; pairs at
///   least
///            CR LF                                              550 ms apart
///   splice   EB 90, length 4*ports+7 (big-endian), 00 31,       at least 1000 ms after the last switch or
///   splice
///            one little-endian u32 per output, 00               frame
///   passed   EB 90, length 5..4096 (big-endian), bytes, 00
///
/// No byte of a frame may come more than 100 ms after the one before. After a fault the next byte that can
/// begin a frame does; only a switch frame of the wrong length is skipped up to its line feed.
///
/// Not for several threads at once. A copy is a snapshot: it hears of nothing further.
class SwitchingBoard
{
public:
    explicit SwitchingBoard(int ports, WireObserver observer = {});

    /// Takes bytes off the link, read at `nowUs`. It never takes the time since the last bytes for a gap,
    /// because the reader may have been late; only idle() does.
    void feed(const uint8_t *bytes, size_t n, int64_t nowUs);

    /// To be called regularly with a time at which everything that had arrived has been fed.
    void idle(int64_t nowUs);

    /// The input that each output shows, 0-based; 0xFFFF is dark, as all are before the first frame.
    std::vector<uint16_t> routing() const { return m_routing; }

    std::vector<SwitchFrame> switchFrames() const { return m_switchFrames.items(); }
    std::vector<SpliceFrame> spliceFrames() const { return m_spliceFrames.items(); }
    std::vector<PassedFrame> passedFrames() const { return m_passedFrames.items(); }
    std::vector<WireFault> faults() const { return m_faults.items(); }

    /// The last MiB that came over the link, good or bad.
    std::vector<uint8_t> bytes() const { return m_bytes.items(); }

private:
    enum class State { Hunting, Text, SkippingLine, Binary };

    void take(uint8_t byte, int64_t nowUs);
    void begin(uint8_t byte, int64_t nowUs);
    void takeText(uint8_t byte, int64_t nowUs);
    void takeSkipped(uint8_t byte, int64_t nowUs);
    void takeBinary(uint8_t byte, int64_t nowUs);
    void rejectAsStray(uint8_t byte, int64_t nowUs);
    void stray(uint8_t byte, int64_t nowUs);
    void finishText(int64_t nowUs);
    void finishBinary(int64_t nowUs);
    void acceptCopy(SwitchFrame frame, int64_t nowUs);
    void acceptPair(SwitchFrame frame);
    void acceptSplice();
    void dropFirstCopy(int64_t nowUs);
    void checkDistance(const char *frame, int64_t frameUs, const std::optional<int64_t> &lastUs,
                       int64_t minimumMs);
    void fault(int64_t nowUs, const std::string &text);

    template <class T>
    void record(History<T> &history, T event);

    size_t m_ports;
    WireObserver m_observer;

    State m_state = State::Hunting;
    std::vector<uint8_t> m_frame; ///< what has come of the frame that is being received
    int64_t m_frameUs = 0;        ///< when its first byte came
    int64_t m_lastByteUs = 0;
    bool m_inStrayRun = false;
    std::optional<SwitchFrame> m_firstCopy;
    std::optional<int64_t> m_lastSwitchUs;
    std::optional<int64_t> m_lastFrameUs; ///< switch or splice

    std::vector<uint16_t> m_routing;
    History<SwitchFrame> m_switchFrames;
    History<SpliceFrame> m_spliceFrames;
    History<PassedFrame> m_passedFrames;
    History<WireFault> m_faults;
    History<uint8_t> m_bytes{1 << 20};
};
} // namespace sim
