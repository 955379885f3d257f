#include "browsing/FileEntry.h"

#include <compare>

namespace taliro {

std::string_view rawValue(SortKey key) {
    switch (key) {
    case SortKey::name:
        return "name";
    case SortKey::dateModified:
        return "dateModified";
    case SortKey::dateAdded:
        return "dateAdded";
    case SortKey::size:
        return "size";
    case SortKey::kind:
        return "kind";
    }
    return {};
}

std::string_view title(SortKey key) {
    switch (key) {
    case SortKey::name:
        return "Name";
    case SortKey::dateModified:
        return "Date Modified";
    case SortKey::dateAdded:
        return "Date Added";
    case SortKey::size:
        return "Size";
    case SortKey::kind:
        return "Kind";
    }
    return {};
}

std::optional<SortKey> sortKey(std::string_view raw) {
    for (auto key : allSortKeys)
        if (rawValue(key) == raw)
            return key;
    return std::nullopt;
}

std::string_view rawValue(ViewMode mode) {
    switch (mode) {
    case ViewMode::icons:
        return "icons";
    case ViewMode::list:
        return "list";
    case ViewMode::columns:
        return "columns";
    }
    return {};
}

std::optional<ViewMode> viewMode(std::string_view raw) {
    for (auto mode : allViewModes)
        if (rawValue(mode) == raw)
            return mode;
    return std::nullopt;
}

namespace {

std::strong_ordering compareByKey(FileEntry const& a, FileEntry const& b, SortKey key) {
    switch (key) {
    case SortKey::name:
        return std::strong_ordering::equal; // left to the tie-break
    case SortKey::dateModified:
        return a.modified.value_or(Date::min()) <=> b.modified.value_or(Date::min());
    case SortKey::dateAdded:
        return a.added.value_or(Date::min()) <=> b.added.value_or(Date::min());
    case SortKey::size:
        return a.size.value_or(0) <=> b.size.value_or(0);
    case SortKey::kind:
        return localizedCaseInsensitiveCompare(a.kind.value_or(""), b.kind.value_or(""));
    }
    return std::strong_ordering::equal;
}

} // namespace

bool sortsBefore(FileEntry const& a, FileEntry const& b, SortKey key, bool ascending) {
    if (key == SortKey::name && a.isDirectory != b.isDirectory)
        return a.isDirectory;
    auto order = compareByKey(a, b, key);
    if (order == 0)
        order = localizedCaseInsensitiveCompare(a.name(), b.name());
    return ascending ? order < 0 : order > 0;
}

} // namespace taliro

std::size_t std::hash<taliro::FileEntry>::operator()(taliro::FileEntry const& entry) const noexcept {
    std::size_t seed = 0;
    auto mix = [&seed](std::size_t value) {
        seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
    };
    auto mixOptional = [&mix](auto const& optional, auto const& hashOf) {
        mix(optional ? 1 : 0);
        if (optional)
            mix(hashOf(*optional));
    };
    auto dateHash = [](taliro::Date date) {
        return std::hash<std::int64_t>{}(date.time_since_epoch().count());
    };
    mix(std::hash<taliro::Url>{}(entry.url));
    mix(entry.isDirectory ? 1 : 0);
    mixOptional(entry.modified, dateHash);
    mixOptional(entry.added, dateHash);
    mixOptional(entry.size, std::hash<std::int64_t>{});
    mixOptional(entry.kind, std::hash<taliro::InternedText>{});
    return seed;
}
