#include "captionstore.h"
#include "fuzz.h"
#include "fuzzunit.h"
#include "input.h"
#include "mxshm.h"

#include <QString>
#include <cstring>
#include <memory>

namespace
{
constexpr char File[] = "/home/app/config/caption.ini";

std::unique_ptr<MxShm> loaded(int ports, int scenes)
{
    auto shm = std::make_unique<MxShm>();
    std::memset(static_cast<void *>(shm.get()), 'Z', sizeof(MxShm));
    shm->port = ports;
    shm->scene = scenes;
    CaptionStore::load(*shm);
    return shm;
}

/// Captions are Latin-1 in the record and UTF-8 on their way out of it.
QByteArray saved(const QByteArray &caption, int number)
{
    const QByteArray back = QString::fromUtf8(caption).toLatin1().left(31);
    return qstrlen(back) == 0 ? QByteArray::number(number) : back;
}

/// Each of so many captions is there and is what it was behind a save; no other one was touched.
template <int Count>
void compare(const SharedText<32> (&first)[Count], const SharedText<32> (&second)[Count], int count)
{
    for (int i = 0; i < Count; ++i) {
        const QByteArray caption(first[i].get().text);
        require(!caption.isEmpty());
        require(QByteArray(second[i].get().text) ==
                (i < count ? saved(caption, i + 1) : QByteArray(31, 'Z')));
    }
}
} // namespace

/// The captions of any matrix.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static FuzzUnit unit;
    Input input(data, size);
    // Mostly few: with all captions it takes a twentieth of a second.
    const int kind = input.number(1);
    const bool isLargest = kind == 255;
    const int ports = isLargest ? 160 : 2 + kind % 8;
    const int scenes = isLargest ? 40 : 10;
    unit.write(File, input.rest());
    const auto first = loaded(ports, scenes);
    CaptionStore::save(*first);
    unit.touch(File);
    const auto second = loaded(ports, scenes);
    compare(first->inputCaption, second->inputCaption, ports);
    compare(first->outputCaption, second->outputCaption, ports);
    compare(first->sceneCaption, second->sceneCaption, scenes);
    return 0;
}
