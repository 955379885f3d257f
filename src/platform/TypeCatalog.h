#pragma once

#include "foundation/InternedText.h"
#include "foundation/Url.h"

#include <string>
#include <string_view>

namespace taliro {

/// Width and height of an image in pixels, as it is shown (turned by its EXIF orientation).
struct PixelSize {
    int width = 0;
    int height = 0;
    bool operator==(PixelSize const&) const = default;
};

/// What kind of thing a file is, judged by its name, and how that is said in the user's language.
class TypeCatalog {
public:
    virtual ~TypeCatalog() = default;

    /// "inode/directory" for folders, "application/octet-stream" for unknown names. Callable from any thread.
    virtual std::string mimeType(std::string_view name, bool isDirectory) = 0;
    /// "Folder", "PDF document": the localized description of `mimeType(name, isDirectory)`.
    /// Callable from any thread; remembers by extension, so that a folder's worth costs little.
    virtual InternedText kind(std::string_view name, bool isDirectory) = 0;
    /// The icon theme's name for the type, then its generic fallback.
    virtual std::string iconName(std::string_view mimeType) = 0;
    virtual std::string genericIconName(std::string_view mimeType) = 0;
    /// Read from the header of the file's first image; {0, 0} where it is not a readable image.
    virtual PixelSize pixelSize(Url const& file) = 0;
};

} // namespace taliro
