#include "devicenode.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace sim
{
namespace
{
constexpr std::size_t MaxReceived = 64 * 1024;

bool makeRaw(int fd)
{
    termios attributes;
    if (::tcgetattr(fd, &attributes) < 0) {
        return false;
    }
    ::cfmakeraw(&attributes);
    return ::tcsetattr(fd, TCSANOW, &attributes) == 0;
}
} // namespace

DeviceNode::DeviceNode(const std::string &path)
    : m_path(path)
{
    if (::unlink(path.c_str()) < 0 && errno != ENOENT) {
        fail();
    }
}

void DeviceNode::fail()
{
    if (m_made.isDone()) {
        m_made = systemFailure("cannot make " + QString::fromStdString(m_path));
    }
}

void DeviceNode::removeFile()
{
    if (m_made.isDone()) {
        ::unlink(m_path.c_str());
    }
}

std::string DeviceNode::receive()
{
    std::string bytes;
    char chunk[4096];
    while (bytes.size() < MaxReceived) {
        const ssize_t count = ::read(m_far.get(), chunk, sizeof chunk);
        if (count <= 0) {
            break;
        }
        bytes.append(chunk, static_cast<std::size_t>(count));
    }
    return bytes;
}

FifoNode::FifoNode(const std::string &path)
    : DeviceNode(path)
{
    if (::mkfifo(path.c_str(), 0666) == 0) {
        m_far.reset(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    }
    if (m_far.get() < 0) {
        fail();
    }
}

MemoryNode::MemoryNode(const std::string &path, std::size_t size)
    : DeviceNode(path)
{
    m_far.reset(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (m_far.get() < 0 || ::ftruncate(m_far.get(), static_cast<off_t>(size)) < 0) {
        fail();
    }
}

PtyNode::PtyNode(const std::string &path)
    : DeviceNode(path)
{
    char slavePath[64];
    m_far.reset(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (m_far.get() < 0 || ::grantpt(m_far.get()) < 0 || ::unlockpt(m_far.get()) < 0 ||
        ::ptsname_r(m_far.get(), slavePath, sizeof slavePath) != 0) {
        fail();
        return;
    }
    m_slave.reset(::open(slavePath, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (m_slave.get() < 0 || !makeRaw(m_slave.get()) || ::symlink(slavePath, path.c_str()) < 0) {
        fail();
    }
}
} // namespace sim
