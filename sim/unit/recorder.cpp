#include "recorder.h"

#include <algorithm>
#include <utility>

namespace sim
{
namespace
{
constexpr std::size_t MaxBytes = 1024 * 1024;

/// Drops what is before the last `size` bytes.
void keepEnd(std::string *bytes, std::size_t size)
{
    bytes->erase(0, bytes->size() - std::min(bytes->size(), size));
}
} // namespace

void Recorder::feed(const quint8 *bytes, std::size_t size, qint64)
{
    m_bytes.append(reinterpret_cast<const char *>(bytes), size);
    if (m_bytes.size() > 2 * MaxBytes) { // seldom, since it moves the whole
        keepEnd(&m_bytes, MaxBytes);
    }
}

std::string Recorder::take()
{
    std::string taken = std::exchange(m_bytes, {});
    keepEnd(&taken, MaxBytes);
    return taken;
}
} // namespace sim
