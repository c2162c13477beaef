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

const char *bytesOf(const MxShm &shm)
{
    return reinterpret_cast<const char *>(&shm);
}

std::unique_ptr<MxShm> untouched()
{
    auto shm = std::make_unique<MxShm>();
    std::memset(static_cast<void *>(shm.get()), 0x5A, sizeof(MxShm));
    return shm;
}

std::unique_ptr<MxShm> loaded()
{
    auto shm = untouched();
    SettingsStore::load(*shm);
    // Behind the end of a text is what was there before.
    for (SharedText<32> MxShm::*field : {&MxShm::eth0Address, &MxShm::eth0Netmask, &MxShm::eth0Gateway,
                                         &MxShm::eth1Address, &MxShm::eth1Netmask, &MxShm::eth1Gateway}) {
        const auto text = ((*shm).*field).get();
        std::memset(static_cast<void *>(&((*shm).*field)), 0, 32);
        ((*shm).*field).set(text);
    }
    return shm;
}
} // namespace

/// The settings and both files of addresses: what is loaded is in range, and the same when it was saved.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static FuzzUnit unit;
    static const auto before = untouched();
    Input input(data, size);
    for (const char *file : Files) {
        unit.write(file, input.text());
    }
    const auto shm = loaded();
    require(shm->port >= 2 && shm->port <= 160 && shm->scene >= 10 && shm->scene <= 40);
    require(std::count(std::begin(Baudrates), std::end(Baudrates), shm->baudrate) == 1);
    for (const char first : {shm->images.get().text[0], shm->language.get().text[0]}) {
        require(first != '\0' && first != '\x5A');
    }
    require(shm->uptime == before->uptime);
    for (const auto &[from, to] : {std::pair(offsetof(MxShm, reserved1), offsetof(MxShm, eth0Address)),
                                   {offsetof(MxShm, reserved2), sizeof(MxShm)}}) {
        require(std::memcmp(bytesOf(*shm) + from, bytesOf(*before) + from, to - from) == 0);
    }
    SettingsStore::save(*shm);
    for (const char *file : Files) {
        unit.touch(file);
    }
    require(std::memcmp(loaded().get(), shm.get(), sizeof(MxShm)) == 0);
    return 0;
}
