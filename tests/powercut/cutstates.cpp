#include "cutstates.h"

#include "filerecord.h"

#include <cstring>
#include <set>

namespace
{
constexpr int Sector = 512;

QByteArray folderOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/'));
}

/// Data, and a size that may come without it.
struct Content {
    QByteArray data;
    qint64 size = 0;

    void put(qint64 at, const QByteArray &bytes)
    {
        data += QByteArray(int(qMax(qint64(0), at - data.size())), 0);
        data.replace(int(at), bytes.size(), bytes);
    }
    void resize(qint64 to)
    {
        data.truncate(int(to));
        size = to;
    }
    QByteArray visible() const
    {
        return data.left(int(size)) + QByteArray(int(qMax(qint64(0), size - data.size())), 0);
    }
};
} // namespace

CutStates::CutStates(const Files &before)
    : m_before(before)
{
    for (const auto &[path, content] : before) {
        m_entries[path] = int(m_sizes.size());
        m_sizes.push_back(content.size());
    }
}

/// The disk uses the number of a file that has gone for another one.
void CutStates::forget(const QByteArray &path)
{
    const auto entry = m_entries.find(path);
    if (entry == m_entries.end()) {
        return;
    }
    for (auto number = m_numbers.begin(); number != m_numbers.end();) {
        number = number->second == entry->second ? m_numbers.erase(number) : std::next(number);
    }
    m_entries.erase(entry);
}

int CutStates::fileOf(const FileRecord &record, const QByteArray &path)
{
    const auto entry = m_entries.find(path);
    if (record.kind == Made && entry != m_entries.end()) {
        return m_numbers[record.file] = entry->second;
    }
    if (record.kind == Made || m_numbers.count(record.file) == 0) {
        m_numbers[record.file] = int(m_sizes.size());
        m_sizes.push_back(0);
    }
    return m_numbers[record.file];
}

void CutStates::split(const Operation &write)
{
    for (qint64 at = write.at, end = write.at + write.data.size(); at < end;) {
        const qint64 next = qMin(end, (at / Sector + 1) * Sector);
        m_operations.push_back(write);
        m_operations.back().at = at;
        m_operations.back().data = write.data.mid(int(at - write.at), int(next - at));
        at = next;
        if (at > m_sizes[size_t(write.file)]) {
            m_operations.push_back({Sized, write.file, at, write.us, {}, {}, {}});
            m_sizes[size_t(write.file)] = at;
        }
    }
}

void CutStates::add(const QByteArray &log)
{
    FileRecord record;
    for (int at = 0; at < log.size(); at += int(sizeof record + record.length)) {
        std::memcpy(&record, log.constData() + at, sizeof record);
        const QByteArray bytes = log.mid(at + int(sizeof record), int(record.length));
        const QByteArray path = bytes.mid(bytes.indexOf('\0') + 1);
        const bool known = record.kind == Made && m_entries.count(path) != 0;
        const int file = fileOf(record, path);
        Operation operation{record.kind, file, record.at, record.us, path, {}, {}};
        switch (record.kind) {
        case Written:
            operation.data = bytes;
            split(operation);
            continue;
        case Sized:
            m_sizes[size_t(file)] = record.at;
            break;
        case Renamed:
            operation.from = bytes.left(bytes.indexOf('\0'));
            forget(path);
            [[fallthrough]];
        case Made:
        case Linked:
            m_entries.erase(operation.from);
            m_entries[path] = file;
            break;
        case Unlinked:
            forget(path);
            break;
        }
        if (!known) {
            m_operations.push_back(operation);
        }
    }
}

qint64 CutStates::duration(int done) const
{
    return done < operations() ? m_operations[size_t(done)].us - m_operations[size_t(done - 1)].us : 0;
}

bool CutStates::isFlushed(int operation, int done) const
{
    const Operation &first = m_operations[size_t(operation)];
    const bool isData = first.kind == Written || first.kind == Sized;
    for (int i = operation + 1; i < done; ++i) {
        const Operation &later = m_operations[size_t(i)];
        const bool same = isData ? later.file == first.file : later.path == folderOf(first.path);
        if (later.kind == Synced || (later.kind == Flushed && same)) {
            return true;
        }
    }
    return false;
}

void CutStates::forEach(int done, int most, const std::function<void(const Files &)> &state)
{
    std::vector<size_t> open;
    Choice all(m_operations.size(), false);
    for (int i = 0; i < done; ++i) {
        all[size_t(i)] = true;
        if (!isFlushed(i, done)) {
            open.push_back(size_t(i));
        }
    }
    const auto with = [&](const std::function<bool(size_t)> &kept) {
        Choice choice = all;
        for (size_t i = 0; i < open.size(); ++i) {
            choice[open[i]] = kept(i);
        }
        state(build(choice));
    };
    if (open.size() < 20 && 1 << open.size() <= most) {
        for (int bits = 0; bits < 1 << open.size(); ++bits) {
            with([&](size_t i) { return (bits >> i & 1) != 0; });
        }
        return;
    }
    for (size_t cut = 0; cut <= open.size(); ++cut) {
        with([&](size_t i) { return i < cut; });
        with([&](size_t i) { return i == cut; });
        with([&](size_t i) { return i != cut; });
    }
    for (int i = 0; i < most; ++i) {
        with([&](size_t) { return m_random() % 2 != 0; });
    }
}

Files CutStates::build(const Choice &kept) const
{
    std::map<QByteArray, int> entries;
    std::map<int, Content> contents;
    for (const auto &[path, content] : m_before) {
        const int file = int(entries.size());
        entries[path] = file;
        contents[file] = {content, content.size()};
    }
    std::set<QByteArray> lost;
    for (size_t i = 0; i < m_operations.size(); ++i) {
        const Operation &operation = m_operations[i];
        if (!kept[i]) {
            if (operation.kind == Folder) {
                lost.insert(operation.path);
            }
            continue;
        }
        switch (operation.kind) {
        case Written:
            contents[operation.file].put(operation.at, operation.data);
            break;
        case Sized:
            contents[operation.file].resize(operation.at);
            break;
        case Renamed:
        case Made:
        case Linked:
            entries.erase(operation.from);
            entries[operation.path] = operation.file;
            break;
        case Unlinked:
            entries.erase(operation.path);
            break;
        }
    }
    Files files;
    for (const auto &[path, file] : entries) {
        if (lost.count(folderOf(path)) == 0) {
            files[path] = contents[file].visible();
        }
    }
    return files;
}
