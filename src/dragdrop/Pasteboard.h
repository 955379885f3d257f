#pragma once

#include "foundation/Url.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// What a drag carries: data by MIME type, fetched from the other program when asked for. Valid during the
/// drop.
struct Pasteboard {
    std::vector<std::string> formats; ///< in the source's order of preference
    std::function<std::string(std::string const& format)> data;

    bool has(std::string_view format) const;
    /// Nothing where the format is not offered or comes out empty.
    std::optional<std::string> read(std::string_view format) const;

    /// Files and links, from `text/uri-list` or what browsers offer beside it. Lines that are no address are
    /// skipped.
    std::vector<Url> urls() const;
    std::vector<Url> fileUrls() const;
    std::optional<Url> webLink() const; ///< the first address that is not a file's
    std::optional<std::string>
    html() const; ///< UTF-8; says so in itself where it has other letters than ASCII
    std::optional<std::string> text() const; ///< UTF-8
};

/// The dropped items' fate, as told to the drag's source.
enum class DropOperation { copy, move };

/// Files are moved, or copied while the command key is held; everything else can only be copied.
DropOperation proposedOperation(bool carriesFiles, bool commandHeld);

} // namespace taliro
