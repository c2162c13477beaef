#include "switchingboard.h"

#include "hex.h"

#include <array>
#include <utility>

namespace sim
{
namespace
{
constexpr std::array<quint8, 8> TextPrefix = {'F', '0', '0', 'C', '0', '0', '0', '0'};
constexpr std::size_t BinaryHeaderSize = 4;
constexpr std::size_t SpliceOverhead = 7;
constexpr std::size_t MinBinarySize = 5;
constexpr std::size_t MaxBinarySize = 4096;

constexpr qint64 GapUs = 100'000;
constexpr qint64 SwitchDistanceMs = 550;
constexpr qint64 SpliceDistanceMs = 1000;
constexpr qint64 ReadingLatencyMs = 100; ///< how late this side may have read the earlier frame

bool isText(quint8 byte)
{
    return (byte >= 0x20 && byte < 0x7F) || byte == '\r' || byte == '\n';
}

/// -1 for anything but an upper-case hexadecimal digit.
int hexDigit(quint8 byte)
{
    if (byte >= '0' && byte <= '9') {
        return byte - '0';
    }
    return byte >= 'A' && byte <= 'F' ? byte - 'A' + 10 : -1;
}

/// Empty unless `text` consists of whole groups of four digits.
std::vector<quint16> hexGroups(const quint8 *text, std::size_t groups)
{
    std::vector<quint16> values;
    for (std::size_t group = 0; group < groups; ++group) {
        int value = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            const int digit = hexDigit(text[group * 4 + i]);
            if (digit < 0) {
                return {};
            }
            value = value * 16 + digit;
        }
        values.push_back(static_cast<quint16>(value));
    }
    return values;
}

std::size_t declaredSize(const std::vector<quint8> &frame)
{
    return static_cast<std::size_t>(frame[2] << 8 | frame[3]);
}
} // namespace

SwitchingBoard::SwitchingBoard(int ports, WireObserver observer)
    : FarEnd(std::move(observer))
    , m_ports(static_cast<std::size_t>(ports))
    , m_routing(m_ports, 0xFFFF)
{
}

void SwitchingBoard::feed(const quint8 *bytes, std::size_t size, qint64 nowUs)
{
    for (std::size_t i = 0; i < size; ++i) {
        m_bytes.add(bytes[i]);
        take(bytes[i], nowUs);
    }
    if (size > 0) {
        m_lastByteUs = nowUs;
    }
}

void SwitchingBoard::idle(qint64 nowUs)
{
    if (nowUs - m_lastByteUs <= GapUs) {
        return;
    }
    m_inStrayRun = false;
    if (m_state == State::Text || m_state == State::Binary) {
        fault(nowUs, "a frame is cut off after " + std::to_string(m_frame.size()) + " bytes");
    } else {
        dropFirstCopy(nowUs);
    }
    m_state = State::Hunting;
    m_firstCopy.reset();
}

void SwitchingBoard::take(quint8 byte, qint64 nowUs)
{
    switch (m_state) {
    case State::Hunting:
        return begin(byte, nowUs);
    case State::Text:
        return takeText(byte, nowUs);
    case State::SkippingLine:
        return takeSkipped(byte, nowUs);
    case State::Binary:
        return takeBinary(byte, nowUs);
    }
}

void SwitchingBoard::begin(quint8 byte, qint64 nowUs)
{
    m_frame.assign(1, byte);
    m_frameUs = nowUs;
    if (byte == TextPrefix[0]) {
        m_state = State::Text;
    } else if (byte == 0xEB) {
        m_state = State::Binary;
    } else {
        m_state = State::Hunting;
        stray(byte, nowUs);
    }
}

void SwitchingBoard::takeText(quint8 byte, qint64 nowUs)
{
    const std::size_t expected = TextPrefix.size() + 4 * m_ports + 2;
    if (m_frame.size() < TextPrefix.size() && byte != TextPrefix[m_frame.size()]) {
        return rejectAsStray(byte, nowUs);
    }
    if (!isText(byte)) {
        fault(nowUs, "byte " + hex(byte) + " within a switch frame");
        m_firstCopy.reset();
        return begin(byte, nowUs);
    }
    m_frame.push_back(byte);
    m_inStrayRun = m_inStrayRun && m_frame.size() < TextPrefix.size();
    if (byte == '\n') {
        finishText(nowUs);
    } else if (m_frame.size() == expected) {
        fault(nowUs, "a switch frame goes on after " + std::to_string(expected) + " bytes");
        m_firstCopy.reset();
        m_state = State::SkippingLine;
    }
}

void SwitchingBoard::takeSkipped(quint8 byte, qint64 nowUs)
{
    if (byte == '\n') {
        m_state = State::Hunting;
    } else if (!isText(byte)) {
        begin(byte, nowUs);
    }
}

void SwitchingBoard::takeBinary(quint8 byte, qint64 nowUs)
{
    if (m_frame.size() == 1 && byte != 0x90) {
        return rejectAsStray(byte, nowUs);
    }
    m_frame.push_back(byte);
    m_inStrayRun = false;
    if (m_frame.size() == 2) {
        dropFirstCopy(nowUs);
    }
    if (m_frame.size() < BinaryHeaderSize) {
        return;
    }
    const std::size_t size = declaredSize(m_frame);
    if (size < MinBinarySize || size > MaxBinarySize) {
        fault(nowUs, "a frame declares a length of " + std::to_string(size));
        m_state = State::Hunting;
    } else if (m_frame.size() == size) {
        finishBinary(nowUs);
    }
}

/// What was taken for the start of a frame is none; `byte`, which does not continue it, may be one.
void SwitchingBoard::rejectAsStray(quint8 byte, qint64 nowUs)
{
    stray(m_frame[0], nowUs);
    begin(byte, nowUs);
}

void SwitchingBoard::stray(quint8 byte, qint64 nowUs)
{
    dropFirstCopy(nowUs);
    if (!m_inStrayRun) {
        fault(nowUs, "bytes that begin no frame, the first one " + hex(byte));
    }
    m_inStrayRun = true;
}

void SwitchingBoard::finishText(qint64 nowUs)
{
    m_state = State::Hunting;
    const std::size_t digits = m_frame.size() - TextPrefix.size() - 1;
    std::vector<quint16> inputs;
    if (digits == 4 * m_ports + 1 && m_frame[m_frame.size() - 2] == '\r') {
        inputs = hexGroups(&m_frame[TextPrefix.size()], m_ports);
    }
    if (!inputs.empty()) {
        return acceptCopy({m_frameUs, inputs}, nowUs);
    }
    m_firstCopy.reset();
    fault(nowUs, "a malformed switch frame of " + std::to_string(m_frame.size()) + " bytes");
}

void SwitchingBoard::finishBinary(qint64 nowUs)
{
    m_state = State::Hunting;
    if (m_frame.back() != 0) {
        fault(nowUs, "a frame ends in " + hex(m_frame.back()) + " instead of 00");
    } else if (m_frame.size() == 4 * m_ports + SpliceOverhead && m_frame[4] == 0x00 && m_frame[5] == 0x31) {
        acceptSplice();
    } else {
        record(m_passedFrames, PassedFrame{m_frameUs, m_frame});
    }
}

void SwitchingBoard::acceptCopy(SwitchFrame frame, qint64 nowUs)
{
    if (!m_firstCopy) {
        m_firstCopy = std::move(frame);
    } else if (m_firstCopy->inputs == frame.inputs) {
        acceptPair(*std::move(m_firstCopy));
        m_firstCopy.reset();
    } else {
        fault(nowUs, "the two copies of a switch frame differ");
        m_firstCopy.reset();
    }
}

void SwitchingBoard::acceptPair(SwitchFrame frame)
{
    checkDistance("switch", frame.timeUs, m_lastSwitchUs, SwitchDistanceMs);
    m_lastSwitchUs = m_lastFrameUs = frame.timeUs;
    m_routing = frame.inputs;
    record(m_switchFrames, std::move(frame));
}

void SwitchingBoard::acceptSplice()
{
    checkDistance("splice", m_frameUs, m_lastFrameUs, SpliceDistanceMs);
    m_lastFrameUs = m_frameUs;
    SpliceFrame frame{m_frameUs, {}};
    for (std::size_t at = 6; at + 4 < m_frame.size(); at += 4) {
        frame.words.push_back(quint32(m_frame[at]) | quint32(m_frame[at + 1]) << 8 |
                              quint32(m_frame[at + 2]) << 16 | quint32(m_frame[at + 3]) << 24);
    }
    record(m_spliceFrames, std::move(frame));
}

void SwitchingBoard::dropFirstCopy(qint64 nowUs)
{
    if (m_firstCopy) {
        fault(nowUs, "a switch frame came once only");
    }
    m_firstCopy.reset();
}

void SwitchingBoard::checkDistance(const char *frame, qint64 frameUs, const std::optional<qint64> &lastUs,
                                   qint64 minimumMs)
{
    if (!lastUs) {
        return;
    }
    const qint64 distanceMs = (frameUs - *lastUs) / 1000;
    if (distanceMs < minimumMs - ReadingLatencyMs) {
        fault(frameUs,
              "a " + std::string(frame) + " frame too early, after " + std::to_string(distanceMs) + " ms");
    }
}

template <class T>
void SwitchingBoard::record(History<T> &history, T event)
{
    tell(event);
    history.add(std::move(event));
}
} // namespace sim
