#include "fuzzunit.h"

#include "fuzz.h"
#include "mxsite.h"

#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// In place of the C library's.
extern "C" int system(const char *)
{
    return 0;
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
