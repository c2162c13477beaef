#include "fuzzunit.h"

#include "fuzz.h"
#include "mxsite.h"

#include <QDir>
#include <QFile>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// In front of the C library's, which the fuzzer needs for itself.
extern "C" int system(const char *command)
{
    if (std::strncmp(command, "rm ", 3) == 0 || std::strcmp(command, "sync") == 0) {
        return 0;
    }
    return reinterpret_cast<int (*)(const char *)>(::dlsym(RTLD_NEXT, "system"))(command);
}

FuzzUnit::FuzzUnit()
    : m_folder(QStringLiteral("/dev/shm/mxfuzz-XXXXXX"))
{
    require(m_folder.isValid());
    qputenv("MX_ROOT", m_folder.path().toUtf8());
    for (const char *folder : {"/dev", "/etc", "/home/app/config", "/home/app/data", "/home/www/splice"}) {
        require(QDir().mkpath(QFile::decodeName(MxSite::path(folder))));
    }
}

void FuzzUnit::write(const char *path, const QByteArray &content)
{
    QFile file(QFile::decodeName(MxSite::path(path)));
    if (content.isEmpty()) {
        file.remove();
        return;
    }
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    touch(path);
}

QByteArray FuzzUnit::read(const char *path) const
{
    QFile file(QFile::decodeName(MxSite::path(path)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void FuzzUnit::touch(const char *path)
{
    const timespec date{++m_date, 0};
    const timespec dates[2] = {date, date};
    require(::utimensat(AT_FDCWD, MxSite::path(path).constData(), dates, 0) == 0);
}

int FuzzUnit::pipe(const char *path) const
{
    const QByteArray place = MxSite::path(path);
    require(::mkfifo(place.constData(), 0600) == 0);
    return ::open(place.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
}

QByteArray readAll(int descriptor)
{
    QByteArray all;
    char bytes[16384];
    for (ssize_t count = 0; (count = ::read(descriptor, bytes, sizeof bytes)) > 0;) {
        all.append(bytes, int(count));
    }
    return all;
}
