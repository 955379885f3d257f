#include "platform/linux/PathBookmarks.h"

#include "platform/linux/BookmarkRecords.h"
#include "platform/linux/Dates.h"

#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace taliro {

namespace {

constexpr std::array<std::uint8_t, 8> magic{'T', 'a', 'l', 'i', 'r', 'o', 'B', '1'};
constexpr std::size_t maxPathBytes = 4096;

/// What tells an item from any other that comes to be at its place.
struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t birth = 0; ///< nanoseconds since 1970; 0 where the file system keeps none

    /// A device's number may change from one start of the machine to the next; a birth time says as much.
    bool isSame(Identity const& other) const {
        return inode == other.inode && birth == other.birth && (birth != 0 || device == other.device);
    }
};

struct Found {
    Identity identity;
    bool isDirectory = false;
};

/// Links followed only where `flags` don't say otherwise.
std::optional<Found> look(int folder, char const* name, int flags = 0) {
    struct statx status {};
    if (::statx(folder, name, flags | AT_NO_AUTOMOUNT, STATX_TYPE | STATX_INO | STATX_BTIME, &status) != 0)
        return std::nullopt;
    Found found;
    found.identity.device = std::uint64_t{status.stx_dev_major} << 32 | status.stx_dev_minor;
    found.identity.inode = status.stx_ino;
    if (status.stx_mask & STATX_BTIME)
        found.identity.birth =
            dateFrom(status.stx_btime.tv_sec, status.stx_btime.tv_nsec).time_since_epoch().count();
    found.isDirectory = S_ISDIR(status.stx_mode);
    return found;
}

Url urlOf(std::string_view path, Found const& found) {
    return Url::file(path, found.isDirectory);
}

struct Closed {
    void operator()(DIR* listing) const { ::closedir(listing); }
};

/// The item under its present name in `folder`.
std::optional<Url> findRenamed(Url const& folder, Identity const& wanted) {
    std::unique_ptr<DIR, Closed> const listing(::opendir(folder.path().c_str()));
    if (!listing)
        return std::nullopt;
    while (auto const* entry = ::readdir(listing.get())) {
        std::string_view const name = entry->d_name;
        if (entry->d_ino != wanted.inode || name == "." || name == "..")
            continue;
        auto const found = look(::dirfd(listing.get()), entry->d_name, AT_SYMLINK_NOFOLLOW);
        if (found && found->identity.isSame(wanted))
            return folder.appending(name, found->isDirectory);
    }
    return std::nullopt;
}

template <typename T>
void append(Bookmarks::Data& data, T value) {
    for (std::size_t i = 0; i < sizeof value; ++i)
        data.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> (8 * i)));
}

template <typename T>
T read(std::uint8_t const*& at) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        value |= std::uint64_t{*at++} << (8 * i);
    return static_cast<T>(value);
}

std::optional<Url> resolvePath(std::string const& path) {
    auto const found = look(AT_FDCWD, path.c_str());
    return found ? std::optional(urlOf(path, *found)) : std::nullopt;
}

} // namespace

std::optional<Bookmarks::Data> PathBookmarks::make(Url const& item) {
    auto const& path = item.path();
    auto const found =
        item.isFile() && path.size() <= maxPathBytes ? look(AT_FDCWD, path.c_str()) : std::nullopt;
    if (!found)
        return std::nullopt;
    Data data(magic.begin(), magic.end());
    append(data, found->identity.device);
    append(data, found->identity.inode);
    append(data, found->identity.birth);
    data.insert(data.end(), path.begin(), path.end());
    return data;
}

std::optional<Url> PathBookmarks::resolve(Data const& bookmark) {
    if (isBookmarkRecords(bookmark)) {
        auto const path = pathOfBookmarkRecords(bookmark);
        return path ? resolvePath(*path) : std::nullopt;
    }
    constexpr auto headSize = magic.size() + 3 * sizeof(std::uint64_t);
    if (bookmark.size() <= headSize || bookmark.size() > headSize + maxPathBytes ||
        !std::equal(magic.begin(), magic.end(), bookmark.begin()))
        return std::nullopt;
    auto const* at = bookmark.data() + magic.size();
    Identity identity;
    identity.device = read<std::uint64_t>(at);
    identity.inode = read<std::uint64_t>(at);
    identity.birth = read<std::int64_t>(at);
    std::string const path(at, bookmark.data() + bookmark.size());
    if (path.front() != '/' || path.find('\0') != std::string::npos)
        return std::nullopt;
    if (auto url = resolvePath(path))
        return url;
    return findRenamed(Url::file(path, false).deletingLastPathComponent(), identity);
}

} // namespace taliro
