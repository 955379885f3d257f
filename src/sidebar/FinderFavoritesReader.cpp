#include "sidebar/FinderFavoritesReader.h"

#include "platform/Bookmarks.h"
#include "platform/DesktopPlaces.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/PropertyLists.h"
#include "platform/StandardFolders.h"
#include "sidebar/KeyedArchive.h"

#include <array>
#include <optional>

namespace taliro {

namespace {

using FinderFavoritesReader::Favorite;
using FinderFavoritesReader::Result;

/// Lists have a few kilobytes.
constexpr std::size_t maxListBytes = 16 << 20;

/// Nothing where `url` is not a folder.
std::optional<Favorite> makeFavorite(Platform& platform, Url const& url, std::optional<std::string> label) {
    if (!url.isFile() || !platform.fileManager.isDirectory(url))
        return std::nullopt;
    auto const folder = url.asDirectory();
    if (!label)
        label = platform.standardFolders.localizedName(folder);
    return Favorite{label.value_or(folder.lastPathComponent()), folder};
}

using Items = std::vector<KeyedArchive::Dictionary>;

/// The dictionaries under the root's "items"; nothing where any part is of another type.
std::optional<Items> itemsOf(KeyedArchive const& archive) {
    auto const root = archive.dictionary(archive.root());
    if (!root || !root->contains("items"))
        return std::nullopt;
    auto const list = archive.array(root->at("items"));
    if (!list)
        return std::nullopt;
    Items items;
    for (auto const object : *list) {
        auto item = archive.dictionary(object);
        if (!item)
            return std::nullopt;
        items.push_back(std::move(*item));
    }
    return items;
}

Result readArchive(Platform& platform, std::string const& bytes) {
    auto list = platform.propertyLists.parse(bytes);
    auto const archive = list ? KeyedArchive::open(std::move(*list)) : std::nullopt;
    auto const items = archive ? itemsOf(*archive) : std::nullopt;
    if (!items)
        return {};
    Result result;
    for (auto const& item : *items) {
        if (auto const name = item.find("Name");
            name != item.end() && archive->string(name->second) == "Recents")
            result.sawRecents = true;
        auto const bookmark = item.find("Bookmark");
        auto const data = bookmark == item.end() ? std::nullopt : archive->data(bookmark->second);
        auto const url = data ? platform.bookmarks.resolve(*data) : std::nullopt;
        if (auto favorite = url ? makeFavorite(platform, *url, std::nullopt) : std::nullopt)
            result.favorites.push_back(std::move(*favorite));
    }
    return result;
}

Result readPlaces(Platform& platform) {
    auto const places = platform.desktopPlaces.read();
    if (!places)
        return {};
    // These file managers always show the recent files, whatever their lists hold.
    Result result{.favorites = {}, .sawRecents = true};
    for (auto const& place : *places)
        if (auto favorite = makeFavorite(platform, place.url, place.label))
            result.favorites.push_back(std::move(*favorite));
    return result;
}

} // namespace

Url FinderFavoritesReader::listFolder(Url const& home) {
    return home.appending("Library/Application Support/com.apple.sharedfilelist", true);
}

std::vector<Url> FinderFavoritesReader::candidatePaths(Url const& home) {
    std::vector<Url> paths;
    for (auto const* generation : {"sfl4", "sfl3", "sfl2"})
        paths.push_back(listFolder(home).appending(std::string("com.apple.LSSharedFileList.FavoriteItems.") +
                                                   generation));
    return paths;
}

Result FinderFavoritesReader::read(Platform& platform) {
    auto& files = platform.fileManager;
    for (auto const& path : candidatePaths(files.homeDirectory()))
        if (auto const bytes = files.readFile(path, maxListBytes))
            return readArchive(platform, *bytes);
    return readPlaces(platform);
}

} // namespace taliro
