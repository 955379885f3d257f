#include "browsing/DirectoryLoader.h"

#include "browsing/Listing.h"
#include "foundation/Parallel.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/TypeCatalog.h"

namespace taliro {

namespace {

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

std::vector<FileEntry> makeEntries(Platform& platform, Url const& folder,
                                   std::vector<ListedItem> const& items) {
    std::vector<FileEntry> entries(items.size());
    forEachPiece(items.size(), [&](std::size_t begin, std::size_t end) {
        for (auto i = begin; i < end; ++i)
            entries[i] = makeEntry(platform.typeCatalog, folder, items[i]);
    });
    return entries;
}

} // namespace

std::vector<FileEntry> DirectoryLoader::list(Platform& platform, Url const& folder) {
    if (!folder.isFile())
        return {};
    auto const listed = platform.fileManager.contents(folder, Hidden::skip);
    return listed ? makeEntries(platform, folder, *listed) : std::vector<FileEntry>();
}

std::vector<FileEntry> DirectoryLoader::list(Platform& platform, Url const& folder,
                                             std::vector<std::string> const& names) {
    return makeEntries(platform, folder, platform.fileManager.contents(folder, names, Hidden::skip));
}

std::string DirectoryLoader::normalizedFilter(std::string_view filter) {
    return lowercased(trimmingWhitespace(filter));
}

bool DirectoryLoader::matches(std::string_view name, std::string_view normalizedFilter) {
    return containsLowercased(name, normalizedFilter);
}

RowList DirectoryLoader::load(Platform& platform, Url const& folder, std::string_view filter, SortKey key,
                              bool ascending) {
    return Listing(list(platform, folder)).rows(filter, key, ascending);
}

Url const& RealHome::url() {
    static Url const home = Platform::current().fileManager.homeDirectory();
    return home;
}

} // namespace taliro
