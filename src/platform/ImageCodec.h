#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace taliro {

/// Pictures from one format to another.
class ImageCodec {
public:
    virtual ~ImageCodec() = default;
    /// The picture of any readable format as PNG; nothing where it can't be read or is absurdly large.
    virtual std::optional<std::string> png(std::string_view bytes) = 0;
};

} // namespace taliro
