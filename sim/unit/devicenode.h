#pragma once

#include <cstddef>
#include <string>

namespace sim
{
/// A file descriptor and its owner; -1 is none.
class Descriptor
{
public:
    explicit Descriptor(int fd = -1)
        : m_fd(fd)
    {
    }
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return m_fd; }
    void reset(int fd = -1);

private:
    int m_fd;
};

/// A device file and the hardware's end of it. The file is made anew by the derived class, whatever stood
/// there before (but no folder), and goes when the object goes. Not for several threads at once.
class DeviceNode
{
public:
    DeviceNode(const DeviceNode &) = delete;
    DeviceNode &operator=(const DeviceNode &) = delete;

    /// Empty when all is well, else one line that names the file and says why.
    const std::string &error() const { return m_error; }

    /// To poll for input.
    int descriptor() const { return m_far.get(); }

    /// What the program has written and is still unread, about 64 KiB of it at most. Does not block.
    std::string receive();

    /// Takes the file away, as if the device were missing; the far end goes on.
    void removeFile();

protected:
    explicit DeviceNode(const std::string &path);
    ~DeviceNode() { removeFile(); }

    const std::string &path() const { return m_path; }

    /// Notes a failed system call (errno) as error().
    void fail();

    Descriptor m_far;

private:
    std::string m_path;
    std::string m_error;
};

/// A FIFO in place of a character device. Our end stays open for both directions, so the program's open never
/// waits.
class FifoNode : public DeviceNode
{
public:
    explicit FifoNode(const std::string &path);
};

/// A regular file of `size` bytes, zero at first, in place of a device's memory.
class MemoryNode : public DeviceNode
{
public:
    MemoryNode(const std::string &path, size_t size);
};
} // namespace sim
