#pragma once

#include <QString>

/// Writes a new file that opens X displays to whoever can read it, which is the owner alone: an entry of
/// random bytes for any display, in the format of Xauthority. Returns an empty text, or one line that says
/// why not.
QString writeCookieFile(const QString &path);
