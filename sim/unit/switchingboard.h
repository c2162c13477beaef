#pragma once

#include "farend.h"

#include <QtGlobal>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace sim
{
/// The switching board as seen from the matrix link. It is stricter than the device: whatever is not exactly
/// one of these frames, or comes too early, is a recorded fault.
///
///   frame   bytes                                            rule
///   switch  "F00C0000", 4 upper-case hex digits per output,  twice, back to back, the same;
///           CR LF                                            pairs at least 550 ms apart
///   splice  EB 90, length 4*ports+7 (big-endian), 00 31,     at least 1000 ms after the last
///           one little-endian u32 per output, 00             switch or splice frame
///   passed  EB 90, length 5..4096 (big-endian), bytes, 00
///
/// No byte of a frame may come more than 100 ms after the one before. After a fault the next byte that can
/// begin a frame does; only a switch frame of the wrong length is skipped up to its line feed.
class SwitchingBoard : public FarEnd
{
public:
    explicit SwitchingBoard(int ports, WireObserver observer = {});

    /// It never takes the time since the last bytes for a gap, because the reader may have been late; only
    /// idle() does.
    void feed(const quint8 *bytes, std::size_t size, qint64 nowUs) override;
    void idle(qint64 nowUs) override;

    /// The input that each output shows, 0-based; 0xFFFF is dark, as all are before the first frame.
    std::vector<quint16> routing() const { return m_routing; }

    std::vector<SwitchFrame> switchFrames() const { return m_switchFrames.items(); }
    std::vector<SpliceFrame> spliceFrames() const { return m_spliceFrames.items(); }
    std::vector<PassedFrame> passedFrames() const { return m_passedFrames.items(); }

    /// The last MiB that came over the link, good or bad.
    std::vector<quint8> bytes() const { return m_bytes.items(); }

private:
    enum class State { Hunting, Text, SkippingLine, Binary };

    void take(quint8 byte, qint64 nowUs);
    void begin(quint8 byte, qint64 nowUs);
    void takeText(quint8 byte, qint64 nowUs);
    void takeSkipped(quint8 byte, qint64 nowUs);
    void takeBinary(quint8 byte, qint64 nowUs);
    void rejectAsStray(quint8 byte, qint64 nowUs);
    void stray(quint8 byte, qint64 nowUs);
    void finishText(qint64 nowUs);
    void finishBinary(qint64 nowUs);
    void acceptCopy(SwitchFrame frame, qint64 nowUs);
    void acceptPair(SwitchFrame frame);
    void acceptSplice();
    void dropFirstCopy(qint64 nowUs);
    void checkDistance(const char *frame, qint64 frameUs, const std::optional<qint64> &lastUs,
                       qint64 minimumMs);

    template <class T>
    void record(History<T> &history, T event);

    std::size_t m_ports;

    State m_state = State::Hunting;
    std::vector<quint8> m_frame; ///< what has come of the frame that is being received
    qint64 m_frameUs = 0;        ///< when its first byte came
    qint64 m_lastByteUs = 0;
    bool m_inStrayRun = false;
    std::optional<SwitchFrame> m_firstCopy;
    std::optional<qint64> m_lastSwitchUs;
    std::optional<qint64> m_lastFrameUs; ///< switch or splice

    std::vector<quint16> m_routing;
    History<SwitchFrame> m_switchFrames;
    History<SpliceFrame> m_spliceFrames;
    History<PassedFrame> m_passedFrames;
    History<quint8> m_bytes{1 << 20};
};
} // namespace sim
