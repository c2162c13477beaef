#pragma once

#include "filedescriptor.h"

/// The serial link to the switching board. A descriptor of 0 or below counts as not open. `adopt` before any
/// thread uses it; the others on any thread, where each frame is one write call unless the link takes only a
/// part.
class MatrixLink
{
public:
    /// Uses `fd` as the link and owns it.
    void adopt(int fd) { m_port.reset(fd); }

    /// Writes and flushes to the device. \return bytes written, or the descriptor when the link is not open
    int writeFlushed(const unsigned char *buf, int len) const;
    /// Writes and nothing else; fails silently.
    void write(const void *buf, int len) const;
    /// Reads what the board has sent, at most `len` bytes. \return bytes read; 0 or below when there are none
    int read(void *buf, int len) const;

private:
    bool isOpen() const { return m_port.get() > 0; }

    FileDescriptor m_port;
};
