#include "browsing/DirectoryLoader.h"

#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/TypeCatalog.h"

#include <algorithm>
#include <cstdint>
#include <future>
#include <numeric>
#include <thread>

namespace taliro {

namespace {

/// Below this a second thread costs more than it saves.
constexpr std::size_t splitFrom = 4000;

FileEntry makeEntry(TypeCatalog& types, Url const& folder, ListedItem const& item) {
    auto const& known = item.attributes;
    bool const isDirectory = known && known->isDirectory;
    FileEntry entry{.url = folder.appending(item.name, isDirectory),
                    .isDirectory = isDirectory,
                    .modified = known ? known->modified : std::nullopt,
                    .added = known ? known->added : std::nullopt,
                    .size = known && !isDirectory ? known->size : 0,
                    .kind = std::nullopt};
    if (known)
        entry.kind = types.kind(item.name, isDirectory);
    return entry;
}

/// Calls `work(begin, end)` for two halves at once where there is enough to do.
template <typename Work>
void inHalves(std::size_t count, Work const& work) {
    if (count < splitFrom || std::thread::hardware_concurrency() < 2) {
        work(std::size_t{0}, count);
        return;
    }
    auto upper = std::async(std::launch::async, [&] { work(count / 2, count); });
    work(std::size_t{0}, count / 2);
    upper.get();
}

/// What one entry is ordered by, in one piece of memory: its number or kind, then its name's collation key.
struct OrderedRow {
    std::int64_t primary = 0;
    std::string key;
    std::size_t index = 0;
};

std::int64_t primaryOf(FileEntry const& entry, SortKey key, bool ascending) {
    switch (key) {
    // Folders come first in either direction.
    case SortKey::name:
        return entry.isDirectory == ascending ? 0 : 1;
    case SortKey::dateModified:
        return entry.modified.value_or(Date::min()).time_since_epoch().count();
    case SortKey::dateAdded:
        return entry.added.value_or(Date::min()).time_since_epoch().count();
    case SortKey::size:
        return entry.size.value_or(0);
    case SortKey::kind:
        return 0;
    }
    return 0;
}

std::vector<OrderedRow> orderedRows(std::vector<FileEntry> const& entries, SortKey key, bool ascending) {
    std::vector<OrderedRow> rows(entries.size());
    inHalves(entries.size(), [&](std::size_t begin, std::size_t end) {
        SortKeyWriter writer;
        for (std::size_t i = begin; i < end; ++i) {
            auto& row = rows[i];
            row.index = i;
            row.primary = primaryOf(entries[i], key, ascending);
            if (key == SortKey::kind) {
                writer.append(entries[i].kind.value_or(""), row.key);
                row.key += '\0'; // Lower than any byte of a key: a shorter kind comes first.
            }
            writer.append(entries[i].name(), row.key);
        }
    });
    return rows;
}

} // namespace

void DirectoryLoader::sort(std::vector<FileEntry>& entries, SortKey key, bool ascending) {
    auto rows = orderedRows(entries, key, ascending);
    auto before = [ascending](OrderedRow const& a, OrderedRow const& b) {
        if (a.primary != b.primary)
            return ascending ? a.primary < b.primary : a.primary > b.primary;
        int const order = a.key.compare(b.key);
        return ascending ? order < 0 : order > 0;
    };
    inHalves(rows.size(), [&](std::size_t begin, std::size_t end) {
        std::stable_sort(rows.begin() + static_cast<std::ptrdiff_t>(begin),
                         rows.begin() + static_cast<std::ptrdiff_t>(end), before);
    });
    auto const middle = rows.begin() + static_cast<std::ptrdiff_t>(rows.size() / 2);
    if (rows.size() >= splitFrom)
        std::inplace_merge(rows.begin(), middle, rows.end(), before);

    std::vector<FileEntry> sorted;
    sorted.reserve(entries.size());
    for (auto const& row : rows)
        sorted.push_back(std::move(entries[row.index]));
    entries = std::move(sorted);
}

std::string DirectoryLoader::normalizedFilter(std::string_view filter) {
    return lowercased(trimmingWhitespace(filter));
}

bool DirectoryLoader::matches(std::string_view name, std::string_view normalizedFilter) {
    return containsLowercased(name, normalizedFilter);
}

std::vector<FileEntry> DirectoryLoader::load(Platform& platform, Url const& folder, std::string_view filter,
                                             SortKey key, bool ascending) {
    if (!folder.isFile())
        return {};
    auto listed = platform.fileManager.contents(folder, Hidden::skip);
    if (!listed)
        return {};
    if (auto const wanted = normalizedFilter(filter); !wanted.empty())
        std::erase_if(*listed, [&](ListedItem const& item) { return !matches(item.name, wanted); });

    std::vector<FileEntry> entries(listed->size());
    inHalves(entries.size(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            entries[i] = makeEntry(platform.typeCatalog, folder, (*listed)[i]);
    });
    sort(entries, key, ascending);
    return entries;
}

Url const& RealHome::url() {
    static Url const home = Platform::current().fileManager.homeDirectory();
    return home;
}

} // namespace taliro
