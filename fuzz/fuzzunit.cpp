#include "fuzzunit.h"

#include "fuzz.h"
#include "mxsite.h"
#include "qmxcomm.h"

#include <QDir>
#include <QFile>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

/// In front of the C library's, by which the fuzzer starts itself again.
extern "C" int system(const char *command)
{
    static const auto real = reinterpret_cast<int (*)(const char *)>(::dlsym(RTLD_NEXT, "system"));
    return std::strstr(command, "fuzz_") != nullptr ? real(command) : 0;
}

extern "C" int clock_nanosleep(clockid_t, int, const timespec *, timespec *)
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

MxShm &newRecord(int ports, int scenes)
{
    // On the heap, so that the sanitizer sees who goes beyond it.
    static std::unique_ptr<MxShm> record;
    if (g_mxComm == nullptr) {
        qputenv("MX_ROOT", "/proc/none");
        g_mxComm = new QMxComm(false, [](unsigned long) {});
    }
    record.reset(new MxShm());
    record->port = ports;
    record->scene = scenes;
    g_mxConfig = record.get();
    return *record;
}

void disturb(MxShm &record, Input &input)
{
    constexpr std::size_t Fields[] = {
        offsetof(MxShm, port),         offsetof(MxShm, scene),         offsetof(MxShm, keypad),
        offsetof(MxShm, beep),         offsetof(MxShm, backlight),     offsetof(MxShm, sleep),
        offsetof(MxShm, baudrate),     offsetof(MxShm, uptime),        offsetof(MxShm, images),
        offsetof(MxShm, language),     offsetof(MxShm, eth0Address),   offsetof(MxShm, eth1Gateway),
        offsetof(MxShm, inputCaption), offsetof(MxShm, outputCaption), offsetof(MxShm, sceneCaption),
        offsetof(MxShm, map),          offsetof(MxShm, splicePending), offsetof(MxShm, spliceData)};
    const std::size_t field = Fields[input.below(std::size(Fields))];
    const std::size_t begin = field + std::size_t(input.byte());
    const int times = input.byte() + 1;
    const QByteArray bytes = input.bytes().repeated(times);
    std::memcpy(reinterpret_cast<char *>(&record) + begin, bytes.constData(),
                qMin<std::size_t>(bytes.size(), sizeof record - begin));
}
