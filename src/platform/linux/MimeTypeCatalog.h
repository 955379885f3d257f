#pragma once

#include "platform/TypeCatalog.h"

#include <cstdint>
#include <shared_mutex>
#include <string>
#include <unordered_map>

namespace taliro {

/// Types from the shared MIME database, by name alone. What an extension means is looked up once.
class MimeTypeCatalog : public TypeCatalog {
public:
    MimeTypeCatalog();
    ~MimeTypeCatalog() override;

    std::string mimeType(std::string_view name, bool isDirectory) override;
    InternedText kind(std::string_view name, bool isDirectory) override;
    std::string iconName(std::string_view mimeType) override;
    std::string genericIconName(std::string_view mimeType) override;
    PixelSize pixelSize(Url const& file) override;

private:
    struct Known {
        InternedText mimeType;
        InternedText kind;
    };
    Known known(std::string_view name, bool isDirectory);
    Known remembered(std::string_view key, bool isDirectory);
    Known lookUp(std::string_view name, bool isDirectory) const;

    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    std::uint64_t m_serial; ///< tells catalogs apart, also one that takes another's place in memory
    std::shared_mutex m_mutex;
    std::unordered_map<std::string, Known, TextHash, std::equal_to<>> m_known;
};

} // namespace taliro
