#include "browsing/RecentsStore.h"

#include "platform/FileManager.h"
#include "platform/Packages.h"
#include "platform/Platform.h"
#include "platform/TypeCatalog.h"

namespace taliro {

namespace {
constexpr std::chrono::seconds year{31'536'000};
}

RecentsStore::RecentsStore(Platform& platform, Date now)
    : m_platform(platform),
      m_changedSince(now - year),
      m_library(platform.fileManager.homeDirectory().appending("Library", true)) {}

RecentsStore& RecentsStore::shared() {
    // Never destroyed: the query belongs to a platform that goes first.
    static auto& store = *new RecentsStore(Platform::current());
    return store;
}

void RecentsStore::start() {
    if (isActive)
        return;
    isActive = true;
    m_platform.metadataQuery.start({.changedSince = m_changedSince, .leaveOut = {m_library}},
                                   [this] { publishResults(); });
}

void RecentsStore::publishResults() {
    auto& query = m_platform.metadataQuery;
    query.disableUpdates();
    std::vector<FileEntry> recent;
    for (auto const& item : query.results()) {
        if (recent.size() == resultLimit)
            break;
        if (!isOrdinary(item.path))
            continue;
        if (auto entry = makeEntry(item.path))
            recent.push_back(std::move(*entry));
    }
    entries = std::move(recent);
    query.enableUpdates();
}

bool RecentsStore::isOrdinary(std::string_view path) const {
    auto const name = path.substr(path.rfind('/') + 1);
    return path.starts_with('/') && !path.starts_with(m_library.path() + "/") &&
           path.find("/.Trash/") == std::string_view::npos && !name.starts_with('.');
}

/// Nothing for plain folders.
std::optional<FileEntry> RecentsStore::makeEntry(std::string const& path) const {
    auto const url = Url::file(path, false);
    auto const known = m_platform.fileManager.attributes(url);
    if (!known)
        return FileEntry{.url = url, .size = 0};
    auto const name = url.lastPathComponent();
    if (known->isDirectory && !isPackageName(name))
        return std::nullopt;
    return FileEntry{.url = known->isDirectory ? url.asDirectory() : url,
                     .isDirectory = known->isDirectory,
                     .modified = known->modified,
                     .added = known->added,
                     .size = known->isDirectory ? 0 : known->size,
                     .kind = m_platform.typeCatalog.kind(name, known->isDirectory)};
}

} // namespace taliro
