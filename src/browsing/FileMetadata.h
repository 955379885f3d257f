#pragma once

#include "foundation/Url.h"

#include <optional>
#include <string>

namespace taliro {

struct Platform;

/// What the inspector says of one item, each looked up afresh and worded in the user's locale; nothing where
/// unknown.
struct FileMetadata {
    Url url;

    std::optional<std::string> kind(Platform& platform) const;
    /// Nothing for folders.
    std::optional<std::string> size(Platform& platform) const;
    std::optional<std::string> modified(Platform& platform) const;
    /// "1920 × 1080" for images.
    std::optional<std::string> dimensions(Platform& platform) const;
};

} // namespace taliro
