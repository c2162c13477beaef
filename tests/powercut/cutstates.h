#pragma once

#include <QByteArray>
#include <functional>
#include <map>
#include <random>
#include <vector>

/// The files of a disk: contents by their paths.
using Files = std::map<QByteArray, QByteArray>;

/// What happened to files, and what a power cut may leave of it. Data comes to the disk in sectors of 512
/// bytes; until it was flushed, each sector, each size of a file and each entry of a folder may be there or
/// not, whatever came before it.
class CutStates
{
public:
    explicit CutStates(const Files &before);

    /// Goes on with what the recorder has written.
    void add(const QByteArray &log);

    int operations() const { return int(m_operations.size()); }
    /// How long the disk was as the first `done` operations had left it, in µs.
    qint64 duration(int done) const;
    /// The states that a cut behind the first `done` operations may leave: all of them, if there are no more
    /// than `most`; else nothing and everything lost, each operation lost or kept alone, every cut in their
    /// order, and as many random ones.
    void forEach(int done, int most, const std::function<void(const Files &)> &state);

private:
    struct Operation {
        int kind; ///< as recorded
        int file;
        qint64 at, us;
        QByteArray path, from, data;
    };
    using Choice = std::vector<bool>; ///< for each operation whether it has come to the disk

    int fileOf(const struct FileRecord &record, const QByteArray &path);
    void forget(const QByteArray &path);
    void split(const Operation &write);
    bool isFlushed(int operation, int done) const;
    Files build(const Choice &kept) const;

    const Files m_before;
    std::map<QByteArray, int> m_entries; ///< as the recorded process sees them
    std::map<quint64, int> m_numbers;    ///< files by their numbers on the disk
    std::vector<qint64> m_sizes;
    std::vector<Operation> m_operations;
    std::mt19937 m_random{12};
};
