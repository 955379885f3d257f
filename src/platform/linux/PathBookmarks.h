#pragma once

#include "platform/Bookmarks.h"

namespace taliro {

/// Bookmarks of our own making: an item's path, and its device, inode and birth time, by which it is found
/// again under another name in the same folder. Resolves bookmarks in the record layout, too, by their path.
class PathBookmarks : public Bookmarks {
public:
    std::optional<Data> make(Url const& item) override;
    std::optional<Url> resolve(Data const& bookmark) override;
};

} // namespace taliro
