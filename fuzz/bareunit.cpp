#include "bareunit.h"

#include "qmxcomm.h"

#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <iterator>
#include <memory>
#include <time.h>

/// The fuzzer starts itself again by this, the control object its commands.
extern "C" int system(const char *command)
{
    static const auto real = reinterpret_cast<int (*)(const char *)>(::dlsym(RTLD_NEXT, "system"));
    return g_mxComm == nullptr ? real(command) : 0;
}

extern "C" int clock_nanosleep(clockid_t, int, const timespec *, timespec *)
{
    return 0;
}

MxShm &newRecord(int ports, int scenes)
{
    // On the heap, so that the sanitizer sees who goes beyond it.
    static std::unique_ptr<MxShm> record;
    if (g_mxComm == nullptr) {
        qputenv("MX_ROOT", "/proc/none");
        std::freopen("/dev/null", "w", stdout);
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
    auto *const memory = reinterpret_cast<char *>(&record);
    std::memcpy(memory + begin, bytes.constData(), qMin<std::size_t>(bytes.size(), sizeof record - begin));
}
