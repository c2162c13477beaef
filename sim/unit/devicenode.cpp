#include "devicenode.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sim
{
namespace
{
constexpr size_t maxReceived = 1 << 16;
} // namespace

void Descriptor::reset(int fd)
{
    if (m_fd >= 0) {
        close(m_fd);
    }
    m_fd = fd;
}

DeviceNode::DeviceNode(const std::string &path)
    : m_path(path)
{
    if (unlink(path.c_str()) < 0 && errno != ENOENT) {
        fail();
    }
}

void DeviceNode::fail()
{
    if (m_error.empty()) {
        m_error = "cannot make " + m_path + ": " + strerror(errno);
    }
}

void DeviceNode::removeFile()
{
    if (m_error.empty()) {
        unlink(m_path.c_str());
    }
}

std::string DeviceNode::receive()
{
    std::string bytes;
    char chunk[4096];
    while (bytes.size() < maxReceived) {
        const ssize_t n = read(m_far.get(), chunk, sizeof chunk);
        if (n <= 0) {
            break;
        }
        bytes.append(chunk, static_cast<size_t>(n));
    }
    return bytes;
}

FifoNode::FifoNode(const std::string &path)
    : DeviceNode(path)
{
    if (mkfifo(path.c_str(), 0666) == 0) {
        m_far.reset(open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    }
    if (m_far.get() < 0) {
        fail();
    }
}

MemoryNode::MemoryNode(const std::string &path, size_t size)
    : DeviceNode(path)
{
    m_far.reset(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (m_far.get() < 0 || ftruncate(m_far.get(), static_cast<off_t>(size)) < 0) {
        fail();
    }
}
} // namespace sim
