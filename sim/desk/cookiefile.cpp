#include "cookiefile.h"

#include "devicenode.h"

#include <QFile>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/random.h>
#include <unistd.h>

using namespace std::string_literals;

namespace
{
constexpr size_t cookieSize = 16;

// Numbers are of two bytes, big-endian; a text comes after its length.
const std::string anyHost = "\xFF\xFF\0\0"s;
const std::string anyDisplay = "\0\0"s;
const std::string method = "\0\x12MIT-MAGIC-COOKIE-1"s;
const std::string entryHead = anyHost + anyDisplay + method + "\0\x10"s;
} // namespace

QString writeCookieFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    std::string entry = entryHead + std::string(cookieSize, '\0');
    // Made anew, since a file that is there may be open to others.
    unlink(name.constData());
    const sim::Descriptor file(open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (file.get() < 0 || getrandom(&entry[entryHead.size()], cookieSize, 0) < 0 ||
        write(file.get(), entry.data(), entry.size()) != static_cast<ssize_t>(entry.size())) {
        return QString("cannot write %1: %2").arg(path, strerror(errno));
    }
    return {};
}
