#pragma once

#include "mxshm.h"

#include <QtGlobal>

/// The two frames that the program itself sends to the switching board, built in place for up to 160 outputs.

/// The routing as text:
///   offset    size    content
///   0         8       "F00C0000"
///   8         4 * n   per output the 0-based input as four upper-case hex digits, FFFF for none
///   8 + 4n    2       CR LF
class SwitchFrame
{
public:
    static constexpr int MaxSize = 8 + 4 * MxMaxPort + 2;

    /// `inputs` holds one entry for each of the `ports` (at most 160) outputs.
    SwitchFrame(const quint16 *inputs, int ports);
    const unsigned char *bytes() const { return m_bytes; }
    int size() const { return m_size; }

private:
    unsigned char m_bytes[MaxSize];
    int m_size;
};

/// The video-wall words:
///   offset    size    content
///   0         2       EB 90
///   2         2       length of the whole frame, 4n + 7, big-endian
///   4         2       00 31
///   6         4 * n   one little-endian word per output
///   6 + 4n    1       00
/// One write takes all of it: of a write that fails the board sees nothing, rather than a header that waits
/// for the words of whatever comes next.
class SpliceFrame
{
public:
    static constexpr int MaxSize = 6 + 4 * MxMaxPort + 1;

    explicit SpliceFrame(const MxShm &shm);
    const unsigned char *bytes() const { return m_bytes; }
    int size() const { return m_size; }

private:
    unsigned char m_bytes[MaxSize];
    int m_size;
};
