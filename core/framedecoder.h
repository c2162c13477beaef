#pragma once

#include <QtGlobal>

/// Finds the board's binary frames in the bytes of a serial control port; one object per port.
///   offset  size  content
///   0       2     EB 90
///   2       2     length of the whole frame, big-endian, at most 4096
///   4       n-5   payload, carried unread
///   n-1     1     00; anything else drops the frame without an answer
/// The byte after EB is not tried as a new start: EB EB 90 does not synchronise. A declared length below 5 is
/// judged on the fifth byte by the same rule, by the byte at length - 1; a declared length of 0 drops the
/// frame. A partial frame waits for ever.
class FrameDecoder
{
public:
    static constexpr int Capacity = 4096;

    /// \return true when `byte` completed a good frame, which can be read until the next feed
    bool feed(quint8 byte);
    const quint8 *frame() const { return m_frame; }
    int frameSize() const { return m_length; }

private:
    quint8 m_frame[Capacity];
    quint16 m_size = 0;   ///< bytes stored; 0 while hunting for EB
    quint16 m_length = 0; ///< as declared
};
