#include "browsing/FileMetadata.h"

#include "foundation/Text.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/TypeCatalog.h"

namespace taliro {

std::optional<std::string> FileMetadata::kind(Platform& platform) const {
    auto const attributes = platform.fileManager.attributes(url);
    if (!attributes)
        return std::nullopt;
    return platform.typeCatalog.kind(url.lastPathComponent(), attributes->isDirectory).text();
}

std::optional<std::string> FileMetadata::size(Platform& platform) const {
    auto const attributes = platform.fileManager.attributes(url);
    if (!attributes || attributes->isDirectory)
        return std::nullopt;
    return byteCountText(attributes->size);
}

std::optional<std::string> FileMetadata::modified(Platform& platform) const {
    auto const attributes = platform.fileManager.attributes(url);
    if (!attributes || !attributes->modified)
        return std::nullopt;
    return dateText(*attributes->modified);
}

std::optional<std::string> FileMetadata::dimensions(Platform& platform) const {
    auto const attributes = platform.fileManager.attributes(url);
    if (!attributes || !attributes->isRegular) // A pipe or device is never opened.
        return std::nullopt;
    auto const size = platform.typeCatalog.pixelSize(url);
    if (size.width <= 0 || size.height <= 0)
        return std::nullopt;
    return std::to_string(size.width) + " × " + std::to_string(size.height);
}

} // namespace taliro
