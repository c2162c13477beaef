#pragma once

#include "result.h"

namespace sim
{
/// Writes a new file that opens X displays to whoever can read it, which is the owner alone: an entry of
/// random bytes for any display, in the format of Xauthority.
Result writeCookieFile(const QString &path);
} // namespace sim
