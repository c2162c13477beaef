#pragma once

#include <unistd.h>

namespace sim
{
/// Owns one descriptor and closes it; -1 is none.
class Descriptor
{
public:
    explicit Descriptor(int fd = -1)
        : m_fd(fd)
    {
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { reset(); }

    void reset(int fd = -1)
    {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
        m_fd = fd;
    }
    int get() const { return m_fd; }

private:
    int m_fd;
};
} // namespace sim
