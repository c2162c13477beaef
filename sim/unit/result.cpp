#include "result.h"

#include <cerrno>
#include <cstring>

namespace sim
{
Result systemFailure(const QString &what)
{
    const char *reason = std::strerror(errno);
    return {what + ": " + reason};
}
} // namespace sim
