#pragma once

#include "foundation/Url.h"

#include <string>
#include <vector>

namespace taliro {

struct Platform;

/// Reads the favorite folders of the desktop's file manager: from its shared list file, a keyed archive, or,
/// where there is none, from the places that Linux file managers keep.
namespace FinderFavoritesReader {

struct Favorite {
    std::string name; ///< for display
    Url url;          ///< a folder
    bool operator==(Favorite const&) const = default;
};

struct Result {
    std::vector<Favorite> favorites; ///< in the list's order
    bool sawRecents = false; ///< the list has its recent files, too; if nothing else, it could be read
    bool operator==(Result const&) const = default;
};

/// The folder of the list files, and the files themselves, the newest generation first: the first that can be
/// read counts.
Url listFolder(Url const& home);
std::vector<Url> candidatePaths(Url const& home);

/// Every problem yields fewer favorites, or none. Blocks while it reads.
Result read(Platform& platform);

} // namespace FinderFavoritesReader

} // namespace taliro
