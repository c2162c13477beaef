#include "devicefiles.h"

#include "filedescriptor.h"
#include "mxsite.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{
/// Mode of the layout texts: the decimal number, as the web side has always found these files.
constexpr mode_t LayoutTextMode = 777;

void runShell(const QByteArray &command)
{
    // Nothing to remove is the usual case, so the result says nothing.
    const int ignored = std::system(command.constData());
    Q_UNUSED(ignored)
}
} // namespace

int DeviceFiles::read(const char *path, unsigned char *buf, int len)
{
    const FileDescriptor file(::open(MxSite::path(path).constData(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) {
        std::memset(buf, 0, static_cast<size_t>(len));
        std::printf("read err\r");
        return file.get();
    }
    return static_cast<int>(::read(file.get(), buf, static_cast<size_t>(len)));
}

int DeviceFiles::write(const char *path, const unsigned char *buf, int len)
{
    const FileDescriptor file(::open(MxSite::path(path).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    if (file.get() < 0) {
        return file.get();
    }
    const auto written = ::write(file.get(), buf, static_cast<size_t>(len));
    ::fsync(file.get());
    return static_cast<int>(written);
}

void DeviceFiles::copy(const char *source, const char *target, bool truncate)
{
    const int flags = O_RDWR | O_CREAT | O_CLOEXEC;
    const FileDescriptor from(::open(MxSite::path(source).constData(), flags, LayoutTextMode));
    const FileDescriptor to(
        ::open(MxSite::path(target).constData(), truncate ? flags | O_TRUNC : flags, LayoutTextMode));
    if (from.get() < 0 || to.get() < 0) {
        return;
    }
    char chunk[1024];
    ssize_t count = 0;
    while ((count = ::read(from.get(), chunk, sizeof chunk)) > 0) {
        if (::write(to.get(), chunk, static_cast<size_t>(count)) != count) {
            return;
        }
    }
}

bool DeviceFiles::exists(const char *path)
{
    return ::access(MxSite::path(path).constData(), F_OK) == 0;
}

void DeviceFiles::makeFolder(const char *path)
{
    ::mkdir(MxSite::path(path).constData(), 0775);
}

void DeviceFiles::removeLeftovers(const char *path)
{
    runShell("rm " + MxSite::shellWord(path) + ".* 2>/dev/null");
}

void DeviceFiles::syncToFlash()
{
    runShell("sync");
    runShell("sync");
}
