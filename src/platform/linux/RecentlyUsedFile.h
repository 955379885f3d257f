#pragma once

#include "foundation/Text.h"

#include <string>
#include <string_view>
#include <vector>

namespace taliro {

struct UsedFile {
    std::string path;
    Date lastUsed;
    bool operator==(UsedFile const&) const = default;
};

/// The local files of a `recently-used.xbel`, in its order, without those that a program keeps to itself.
/// What comes before a fault in the XML counts.
std::vector<UsedFile> parseRecentlyUsed(std::string_view bytes);

} // namespace taliro
