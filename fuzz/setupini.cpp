#include "fuzz.h"
#include "fuzzunit.h"
#include "input.h"
#include "mxshm.h"
#include "settingsstore.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>

namespace
{
constexpr const char *Files[] = {"/home/app/config/setup.ini", "/etc/eth0.conf", "/etc/eth1.conf"};
constexpr int Baudrates[] = {300,   600,   1200,  2400,  4800,   9600,  19200,
                             38400, 57600, 76800, 96000, 115200, 230400};

std::unique_ptr<MxShm> untouched()
{
    auto shm = std::make_unique<MxShm>();
    std::memset(static_cast<void *>(shm.get()), 0x5A, sizeof(MxShm));
    shm->images.set("");
    shm->language.set("");
    return shm;
}

/// All that is in the files of settings, once they are saved.
QByteArray saved(FuzzUnit &unit, const MxShm &shm)
{
    SettingsStore::save(shm);
    QByteArray all;
    for (const char *file : Files) {
        unit.touch(file);
        all += unit.read(file);
    }
    return all;
}
} // namespace

/// The settings and both files of addresses: what is loaded is in range, and the same when it was saved.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static FuzzUnit unit;
    Input input(data, size);
    for (const char *file : Files) {
        unit.write(file, input.text());
    }
    const auto shm = untouched();
    SettingsStore::load(*shm);
    require(shm->port >= 2 && shm->port <= 160 && shm->scene >= 10 && shm->scene <= 40);
    require(std::count(std::begin(Baudrates), std::end(Baudrates), shm->baudrate) == 1);
    require(shm->images.get().text[0] != '\0' && shm->language.get().text[0] != '\0');
    require(shm->uptime == untouched()->uptime);
    for (const auto &[from, to] : {std::pair(offsetof(MxShm, reserved1), offsetof(MxShm, eth0Address)),
                                   {offsetof(MxShm, reserved2), sizeof(MxShm)}}) {
        const auto *const bytes = reinterpret_cast<const char *>(shm.get());
        require(QByteArray(bytes + from, int(to - from)).count('\x5A') == int(to - from));
    }
    const QByteArray files = saved(unit, *shm);
    const auto again = untouched();
    SettingsStore::load(*again);
    require(saved(unit, *again) == files);
    return 0;
}
