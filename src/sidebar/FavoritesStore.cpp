#include "sidebar/FavoritesStore.h"

#include "browsing/SmartFolders.h"
#include "platform/DesktopPlaces.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/StandardFolders.h"
#include "platform/UserDefaults.h"
#include "sidebar/FinderFavoritesReader.h"

#include <algorithm>
#include <array>

namespace taliro {

namespace {

struct KnownFolder {
    StandardFolder folder;
    char const* name; ///< in the home folder, where the user has it nowhere else
    char const* symbol;
};
constexpr std::array knownFolders{
    KnownFolder{StandardFolder::desktop, "Desktop", "menubar.dock.rectangle"},
    KnownFolder{StandardFolder::documents, "Documents", "doc"},
    KnownFolder{StandardFolder::downloads, "Downloads", "arrow.down.circle"},
    KnownFolder{StandardFolder::movies, "Movies", "film"},
    KnownFolder{StandardFolder::music, "Music", "music.note"},
    KnownFolder{StandardFolder::pictures, "Pictures", "photo"},
    KnownFolder{StandardFolder::publicShare, "Public", "person.crop.square"},
};
constexpr std::size_t seededFolders = 3;
constexpr char applications[] = "/Applications";

SidebarItem recentsItem() {
    return {.id = "/recents", .title = "Recents", .symbol = "clock", .url = SmartFolders::recents()};
}

} // namespace

FavoritesStore::FavoritesStore(Platform& platform)
    : m_platform(platform),
      m_home(platform.fileManager.homeDirectory().asDirectory()),
      m_finderWatcher(platform) {
    m_symbols.emplace_back(m_home.path(), "house");
    for (auto const& known : knownFolders) {
        m_symbols.emplace_back(m_home.appending(known.name).path(), known.symbol);
        if (auto const url = m_platform.standardFolders.url(known.folder))
            m_symbols.emplace_back(url->path(), known.symbol);
    }
    m_symbols.emplace_back(applications, "square.grid.3x3");

    syncWithFinder = m_platform.userDefaults.boolean(favoritesKeys::syncFavoritesWithFinder);
    seedDefaultsIfNeeded();
    m_finderWatcher.watch(FinderFavoritesReader::listFolder(m_home));
    m_finderTick = m_finderWatcher.tick.observe([this](int) { reloadIfSynced(); });
    m_placesChanged = m_platform.desktopPlaces.observeChanges([this] { reloadIfSynced(); });
    reload();
}

FavoritesStore& FavoritesStore::shared() {
    // Never destroyed: its watch belongs to a platform that goes first.
    static auto& store = *new FavoritesStore(Platform::current());
    return store;
}

void FavoritesStore::setSyncWithFinder(bool on) {
    syncWithFinder = on;
    m_platform.userDefaults.setBoolean(favoritesKeys::syncFavoritesWithFinder, on);
    reload();
}

void FavoritesStore::removeFavorite(SidebarItem const& item) {
    if (syncWithFinder)
        return;
    auto bookmarks = loadUserBookmarks();
    std::erase_if(bookmarks, [&](Bookmark const& bookmark) { return bookmark.url == item.url; });
    saveUserBookmarks(bookmarks);
    reload();
}

std::string FavoritesStore::symbol(Url const& url) const {
    auto const found = std::ranges::find(m_symbols, url.path(), &std::pair<std::string, std::string>::first);
    return found == m_symbols.end() ? "folder" : found->second;
}

void FavoritesStore::reloadIfSynced() {
    if (syncWithFinder)
        reload();
}

void FavoritesStore::reload() {
    if (!syncWithFinder) {
        items = userBookmarksAsItems();
        return;
    }
    auto const list = FinderFavoritesReader::read(m_platform);
    if (list.favorites.empty() && !list.sawRecents) {
        finderAccessDenied = true;
        items = userBookmarksAsItems();
        return;
    }
    finderAccessDenied = false;
    std::vector<SidebarItem> rows{recentsItem()};
    for (auto const& favorite : list.favorites)
        rows.push_back({favorite.url.path(), favorite.name, symbol(favorite.url), favorite.url});
    items = std::move(rows);
}

std::vector<Url> FavoritesStore::defaultFolders() const {
    std::vector<Url> folders;
    for (auto const& known : std::span(knownFolders).first<seededFolders>())
        folders.push_back(m_platform.standardFolders.url(known.folder)
                              .value_or(m_home.appending(known.name))
                              .asDirectory());
    folders.push_back(m_home);
    folders.push_back(Url::file(applications, true));
    return folders;
}

void FavoritesStore::seedDefaultsIfNeeded() {
    auto& defaults = m_platform.userDefaults;
    if (defaults.boolean(favoritesKeys::userFavoritesSeeded))
        return;
    std::vector<Bookmark> bookmarks;
    for (auto const& folder : defaultFolders())
        if (auto data = m_platform.bookmarks.make(folder))
            bookmarks.push_back({folder, std::move(*data)});
    saveUserBookmarks(bookmarks);
    defaults.setBoolean(favoritesKeys::userFavoritesSeeded, true);
}

std::vector<FavoritesStore::Bookmark> FavoritesStore::loadUserBookmarks() const {
    auto const stored = m_platform.userDefaults.object(favoritesKeys::userFavoriteBookmarks);
    auto const* list = stored ? stored->as<PropertyValue::List>() : nullptr;
    if (!list ||
        !std::ranges::all_of(*list, [](PropertyValue const& value) { return value.as<Bookmarks::Data>(); }))
        return {};
    std::vector<Bookmark> bookmarks;
    for (auto const& value : *list) {
        auto const& data = *value.as<Bookmarks::Data>();
        if (auto url = m_platform.bookmarks.resolve(data))
            bookmarks.push_back({std::move(*url), data});
    }
    return bookmarks;
}

void FavoritesStore::saveUserBookmarks(std::vector<Bookmark> const& bookmarks) {
    PropertyValue::List list;
    for (auto const& bookmark : bookmarks)
        list.push_back({bookmark.data});
    m_platform.userDefaults.set(favoritesKeys::userFavoriteBookmarks, PropertyValue{std::move(list)});
}

std::vector<SidebarItem> FavoritesStore::userBookmarksAsItems() const {
    std::vector<SidebarItem> rows{recentsItem()};
    for (auto const& [url, data] : loadUserBookmarks())
        rows.push_back({url.path(), url.lastPathComponent(), symbol(url), url});
    return rows;
}

} // namespace taliro
