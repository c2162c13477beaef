#include "seriallink.h"

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace sim
{
namespace
{
constexpr size_t maxOutgoing = 1 << 20;

bool makeRaw(int fd)
{
    termios attributes;
    if (tcgetattr(fd, &attributes) < 0) {
        return false;
    }
    cfmakeraw(&attributes);
    return tcsetattr(fd, TCSANOW, &attributes) == 0;
}
} // namespace

PtyNode::PtyNode(const std::string &path)
    : DeviceNode(path)
{
    char slavePath[64];
    m_far.reset(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (m_far.get() < 0 || grantpt(m_far.get()) < 0 || unlockpt(m_far.get()) < 0 ||
        ptsname_r(m_far.get(), slavePath, sizeof slavePath) != 0) {
        fail();
        return;
    }
    m_slave.reset(open(slavePath, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (m_slave.get() < 0 || !makeRaw(m_slave.get()) || symlink(slavePath, path.c_str()) < 0) {
        fail();
    }
}

SerialLink::SerialLink(const std::string &path)
    : PtyNode(path)
{
}

termios SerialLink::attributes() const
{
    termios attributes{};
    tcgetattr(m_slave.get(), &attributes);
    return attributes;
}

void SerialLink::send(const std::string &bytes, int64_t notBeforeUs)
{
    if (bytes.empty() || m_outgoingSize + bytes.size() > maxOutgoing) {
        return;
    }
    m_outgoing.push_back({bytes, notBeforeUs});
    m_outgoingSize += bytes.size();
}

void SerialLink::flush(int64_t nowUs)
{
    while (!m_outgoing.empty() && m_outgoing.front().notBeforeUs <= nowUs) {
        std::string &bytes = m_outgoing.front().bytes;
        const ssize_t n = write(m_far.get(), bytes.data(), bytes.size());
        const size_t gone = n > 0 ? static_cast<size_t>(n) : 0;
        m_outgoingSize -= gone;
        if (gone < bytes.size()) {
            bytes.erase(0, gone);
            return;
        }
        m_outgoing.pop_front();
    }
}

PatchCable::PatchCable(const std::string &path)
    : PtyNode(path)
{
    m_slave.reset();
}

void PatchCable::deliver(const std::string &bytes)
{
    // Only the hang-up tells whether someone is there; without it, old answers would wait for the next one.
    pollfd far = {m_far.get(), POLLOUT, 0};
    if (poll(&far, 1, 0) == 1 && !(far.revents & POLLHUP) &&
        write(m_far.get(), bytes.data(), bytes.size()) < 0) {
        return; // full: the terminal program does not read
    }
}
} // namespace sim
