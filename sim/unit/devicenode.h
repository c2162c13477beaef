#pragma once

#include "descriptor.h"
#include "result.h"

#include <cstddef>
#include <string>

namespace sim
{
/// A device file and the hardware's end of it. The file is made anew by the derived class, whatever stood
/// there before (but no folder), and goes when the object goes. Not for several threads at once.
class DeviceNode
{
public:
    DeviceNode(const DeviceNode &) = delete;
    DeviceNode &operator=(const DeviceNode &) = delete;
    virtual ~DeviceNode() { removeFile(); }

    /// Whether it could be made; the failure names the file.
    const Result &made() const { return m_made; }

    /// To poll for input.
    int descriptor() const { return m_far.get(); }

    /// What the program has written and is still unread, about 64 KiB of it at most. Does not block.
    std::string receive();

    /// Takes the file away, as if the device were missing; the far end goes on.
    void removeFile();

protected:
    explicit DeviceNode(const std::string &path);

    const std::string &path() const { return m_path; }

    /// Notes a failed system call (errno) as the result of making it, unless there is a failure already.
    void fail();

    Descriptor m_far;

private:
    std::string m_path;
    Result m_made;
};

/// A FIFO in place of a character device. The hardware's end stays open for both directions, so the program's
/// open never waits.
class FifoNode : public DeviceNode
{
public:
    explicit FifoNode(const std::string &path);
};

/// A regular file of `size` bytes, zero at first, in place of a device's memory.
class MemoryNode : public DeviceNode
{
public:
    MemoryNode(const std::string &path, std::size_t size);
};

/// A pty, raw and without echo, with its slave linked at a path for someone to open as a serial port.
class PtyNode : public DeviceNode
{
protected:
    explicit PtyNode(const std::string &path);

    Descriptor m_slave;
};
} // namespace sim
