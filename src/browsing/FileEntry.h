#pragma once

#include "foundation/InternedText.h"
#include "foundation/Text.h"
#include "foundation/Url.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace taliro {

/// One listed item with what was known of it when its folder was read. Rows are keyed by `url`.
struct FileEntry {
    Url url;
    bool isDirectory = false;
    std::optional<Date> modified = std::nullopt;
    std::optional<Date> added = std::nullopt;
    std::optional<std::int64_t> size = std::nullopt; ///< bytes
    std::optional<InternedText> kind = std::nullopt; ///< localized description of the type

    /// The name with its extension, in the file system's bytes.
    std::string name() const { return url.lastPathComponent(); }
    /// The same without a copy, for loops over many entries; lives as long as `url`.
    std::string_view nameView() const {
        std::string_view const path = url.path();
        return path.size() > 1 ? path.substr(path.rfind('/') + 1) : path;
    }

    bool operator==(FileEntry const&) const = default;
};

enum class SortKey { name, dateModified, dateAdded, size, kind };
inline constexpr std::array allSortKeys{SortKey::name, SortKey::dateModified, SortKey::dateAdded,
                                        SortKey::size, SortKey::kind};
std::string_view rawValue(SortKey key);
std::string_view title(SortKey key);
std::optional<SortKey> sortKey(std::string_view rawValue);

enum class ViewMode { icons, list, columns };
inline constexpr std::array allViewModes{ViewMode::icons, ViewMode::list, ViewMode::columns};
std::string_view rawValue(ViewMode mode);
std::optional<ViewMode> viewMode(std::string_view rawValue);

/// Whether `a` comes before `b`. Only the name key keeps folders on top, in both directions; ties of the
/// other keys are broken by name in the same direction.
bool sortsBefore(FileEntry const& a, FileEntry const& b, SortKey key, bool ascending);

} // namespace taliro

template <>
struct std::hash<taliro::FileEntry> {
    std::size_t operator()(taliro::FileEntry const& entry) const noexcept;
};
