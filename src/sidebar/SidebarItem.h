#pragma once

#include "foundation/Url.h"

#include <string>

namespace taliro {

/// A row of the sidebar.
struct SidebarItem {
    std::string id; ///< the path of what the row opens
    std::string title;
    std::string symbol; ///< the symbol's name
    Url url;

    bool operator==(SidebarItem const&) const = default;
};

} // namespace taliro

template <>
struct std::hash<taliro::SidebarItem> {
    std::size_t operator()(taliro::SidebarItem const& item) const noexcept {
        auto const mix = [](std::size_t seed, std::size_t value) { return seed * 31 + value; };
        std::hash<std::string> const text;
        return mix(mix(mix(text(item.id), text(item.title)), text(item.symbol)),
                   std::hash<taliro::Url>{}(item.url));
    }
};
