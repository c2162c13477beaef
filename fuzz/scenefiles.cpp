#include "fuzz.h"
#include "fuzzunit.h"
#include "input.h"
#include "mxshm.h"
#include "scenestore.h"

#include <cstring>
#include <memory>

namespace
{
constexpr char Layout[] = "/home/www/splice/splice.txt";

/// The first words of a file as the record has them: what the file lacks is 0.
QByteArray table(const QByteArray &file, int size)
{
    return file.left(size) + QByteArray(qMax(0, size - file.size()), '\0');
}

QByteArray bytesAt(const void *place, int size)
{
    return QByteArray(static_cast<const char *>(place), size);
}

/// Written over the beginning of what was there.
QByteArray over(const QByteArray &file, const QByteArray &content)
{
    return content + file.mid(content.size());
}
} // namespace

/// Scenes with their splices and layout texts, of any content and length.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static FuzzUnit unit;
    static const auto shm = std::make_unique<MxShm>();
    Input input(data, size);
    const int ports = 2 + input.number(1) % 159;
    const int scene = 1 + input.number(1) % 10;
    const QByteArray number = QByteArray::number(scene);
    const QByteArray mapFile = "/home/app/data/scene" + number;
    const QByteArray wordsFile = "/home/app/data/splice" + number + ".ini";
    const QByteArray textFile = "/home/www/splice/splice" + number + ".txt";
    const QByteArray live = input.text();
    const QByteArray map = input.text();
    const QByteArray words = input.text();
    const QByteArray text = input.text();
    const QByteArray present = input.rest();
    unit.write("/home/app/data/scene0", live);
    unit.write(mapFile, map);
    unit.write(wordsFile, words);
    unit.write(textFile, text);
    unit.write(Layout, present);
    std::memset(static_cast<void *>(shm.get()), 0x5A, sizeof(MxShm));
    shm->port = ports;
    shm->scene = 10;

    SceneStore::load(*shm);
    require(bytesAt(shm->map, 2048) == over(QByteArray(2048, 0x5A), table(live, 2 * ports)));
    require(bytesAt(shm->sceneMap[scene], 2048) == over(QByteArray(2048, 0x5A), table(map, 2 * ports)));
    SceneStore::save(*shm, scene);
    require(unit.read(mapFile) == over(map, table(live, 2 * ports)));
    require(unit.read(wordsFile) == over(words, QByteArray(4 * ports, 0x5A)));
    require(unit.read(textFile) == over(text, present));

    unit.write(wordsFile, words);
    unit.write(mapFile, map);
    SceneStore::load(*shm);
    SceneStore::recall(*shm, scene, [&](unsigned long ms) {
        require(ms == 1000 && !shm->splicePending.raised());
        require(bytesAt(shm->map, 2 * ports) == table(map, 2 * ports));
    });
    require(shm->splicePending.raised());
    require(bytesAt(shm->spliceData, 4096) == over(QByteArray(4096, 0x5A), table(words, 4 * ports)));
    require(unit.read(Layout) == over(text, present));
    require(bytesAt(shm->sceneMap[11], 2048) == QByteArray(2048, 0x5A)); // which this unit has not
    for (const QByteArray &file : {mapFile, wordsFile, textFile}) {
        unit.write(file, {});
    }
    return 0;
}
