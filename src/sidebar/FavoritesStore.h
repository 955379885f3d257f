#pragma once

#include "browsing/DirectoryWatcher.h"
#include "foundation/Published.h"
#include "platform/Bookmarks.h"
#include "sidebar/SidebarItem.h"

#include <string>
#include <utility>
#include <vector>

namespace taliro {

struct Platform;

/// The stored keys of the favorites feature.
namespace favoritesKeys {
inline constexpr char userFavoriteBookmarks[] = "userFavoriteBookmarks";
inline constexpr char userFavoritesSeeded[] = "userFavoritesSeeded";
inline constexpr char syncFavoritesWithFinder[] = "syncFavoritesWithFinder";
inline constexpr char dismissedSyncSuggestion[] = "dismissedSyncSuggestion";
} // namespace favoritesKeys

/// The user's favorite folders: a list of our own, begun with the standard folders, or, while
/// `syncWithFinder` is on, the favorites of the desktop's file manager. The recent files come first in
/// either.
class FavoritesStore {
public:
    explicit FavoritesStore(Platform& platform);
    static FavoritesStore& shared();

    FavoritesStore(FavoritesStore const&) = delete;
    FavoritesStore& operator=(FavoritesStore const&) = delete;

    Published<std::vector<SidebarItem>> items; ///< changed by the store alone
    Published<bool> syncWithFinder{false};     ///< changed through `setSyncWithFinder`
    /// Sync is on and the file manager's list could not be read; our own is shown meanwhile.
    Published<bool> finderAccessDenied{false};

    /// Stores the switch and reads the list anew, also when nothing changes.
    void setSyncWithFinder(bool on);
    /// Takes `item` off our own list; does nothing while sync is on.
    void removeFavorite(SidebarItem const& item);

    /// The symbol of a favorite folder, by its exact path.
    std::string symbol(Url const& url) const;

private:
    struct Bookmark {
        Url url;
        Bookmarks::Data data;
    };

    void reload();
    void reloadIfSynced();
    std::vector<Url> defaultFolders() const;
    void seedDefaultsIfNeeded();
    std::vector<Bookmark> loadUserBookmarks() const;
    void saveUserBookmarks(std::vector<Bookmark> const& bookmarks);
    std::vector<SidebarItem> userBookmarksAsItems() const;

    Platform& m_platform;
    Url m_home;
    std::vector<std::pair<std::string, std::string>> m_symbols; ///< path and symbol, the first match counts
    DirectoryWatcher m_finderWatcher;
    Subscription m_finderTick;
    Subscription m_placesChanged;
};

} // namespace taliro
