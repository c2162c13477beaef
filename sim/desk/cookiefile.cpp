#include "cookiefile.h"

#include "descriptor.h"

#include <QFile>
#include <cstddef>
#include <fcntl.h>
#include <string>
#include <sys/random.h>
#include <unistd.h>

namespace sim
{
using namespace std::string_literals;

namespace
{
constexpr std::size_t CookieSize = 16;

// Numbers are of two bytes, big-endian; a text comes after its length.
const std::string AnyHost = "\xFF\xFF\0\0"s;
const std::string AnyDisplay = "\0\0"s;
const std::string Method = "\0\x12MIT-MAGIC-COOKIE-1"s;
const std::string EntryHead = AnyHost + AnyDisplay + Method + "\0\x10"s;
} // namespace

Result writeCookieFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    std::string entry = EntryHead + std::string(CookieSize, '\0');
    // Made anew, since a file that is there may be open to others.
    ::unlink(name.constData());
    const Descriptor file(::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (file.get() < 0 || ::getrandom(&entry[EntryHead.size()], CookieSize, 0) < 0 ||
        ::write(file.get(), entry.data(), entry.size()) != static_cast<ssize_t>(entry.size())) {
        return systemFailure("cannot write " + path);
    }
    return {};
}
} // namespace sim
