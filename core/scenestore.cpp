#include "scenestore.h"

#include "devicefiles.h"
#include "mxshm.h"

#include <cstdint>
#include <cstdio>

namespace
{
constexpr char LayoutFolder[] = "/home/www/splice";
constexpr char LayoutText[] = "/home/www/splice/splice.txt";

/// Time for the routing to leave before the layout that belongs to it does.
constexpr unsigned long RecallPauseMs = 1000;

/// A path with a slot number in it; the longest is far below the buffer's size.
struct NumberedPath {
    char text[64];
    NumberedPath(const char *format, int n) { std::snprintf(text, sizeof text, format, n); }
    operator const char *() const { return text; }
};

NumberedPath mapFile(int n)
{
    return {"/home/app/data/scene%d", n};
}

NumberedPath spliceFile(int n)
{
    return {"/home/app/data/splice%d.ini", n};
}

NumberedPath layoutTextOf(int n)
{
    return {"/home/www/splice/splice%d.txt", n};
}

/// The first `port` numbers of a table, between the record and a file. Both hold them little-endian, as
/// memory does. False when the file could not be read: the table then keeps what it has.
template <typename T>
bool readTable(const char *path, SharedNumber<T> *table, int count)
{
    T words[MxMaxPort] = {};
    const FileResult result =
        DeviceFiles::read(path, reinterpret_cast<unsigned char *>(words), count * int(sizeof(T)));
    result.report();
    if (result.outcome == FileResult::Failed) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        table[i] = words[i];
    }
    return true;
}

template <typename T>
void writeTable(const char *path, const SharedNumber<T> *table, int count)
{
    T words[MxMaxPort];
    for (int i = 0; i < count; ++i) {
        words[i] = table[i];
    }
    DeviceFiles::write(path, reinterpret_cast<const unsigned char *>(words), count * int(sizeof(T))).report();
}

void copyMap(const MxShm &shm, const SharedUInt16 *from, SharedUInt16 *to)
{
    for (int o = 0; o < portCount(shm); ++o) {
        to[o] = from[o];
    }
}
} // namespace

bool SceneStore::offered(const MxShm &shm, int n)
{
    return n >= 0 && n <= sceneCount(shm);
}

bool SceneStore::load(MxShm &shm)
{
    const bool isLiveMapKnown = readTable(mapFile(0), shm.sceneMap[0], portCount(shm));
    for (int n = 1; n <= sceneCount(shm); ++n) {
        readTable(mapFile(n), shm.sceneMap[n], portCount(shm));
    }
    return isLiveMapKnown;
}

void SceneStore::save(MxShm &shm, int n)
{
    if (!offered(shm, n)) {
        return;
    }
    writeTable(mapFile(n), shm.map, portCount(shm));
    if (n == 0) {
        return;
    }
    copyMap(shm, shm.map, shm.sceneMap[n]);
    saveSplice(shm, n);
}

void SceneStore::recall(MxShm &shm, int n, const Pause &pause)
{
    if (n == 0 || !offered(shm, n)) {
        return;
    }
    copyMap(shm, shm.sceneMap[n], shm.map);
    pause(RecallPauseMs);
    loadSplice(shm, n);
}

void SceneStore::saveSplice(const MxShm &shm, int n)
{
    if (!offered(shm, n)) {
        return;
    }
    const NumberedPath words = spliceFile(n);
    writeTable(words, shm.spliceData, portCount(shm));
    std::printf("SaveSplice %s\r\n", words.text);
    DeviceFiles::makeFolder(LayoutFolder).report();
    if (n == 0 || !DeviceFiles::exists(LayoutText)) {
        return;
    }
    const NumberedPath text = layoutTextOf(n);
    std::printf("webstr %s\r\n", text.text);
    DeviceFiles::copy(LayoutText, text, false).report();
}

void SceneStore::loadSplice(MxShm &shm, int n)
{
    if (!offered(shm, n)) {
        return;
    }
    const NumberedPath words = spliceFile(n);
    std::printf("LoadSplice id:%d  %s\r\n", n, words.text);
    if (!readTable(words, shm.spliceData, portCount(shm))) {
        return;
    }
    shm.splicePending.raise();
    if (n == 0) {
        return;
    }
    const NumberedPath text = layoutTextOf(n);
    std::printf("webstr %s\r\n", text.text);
    DeviceFiles::copy(text, LayoutText, true).report();
}
