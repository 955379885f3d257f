#pragma once

#include <string_view>

namespace taliro {

/// Whether a folder of this name passes for one thing, an application, rather than for a place to look into.
inline bool isPackageName(std::string_view name) {
    return name.ends_with(".app") || name.ends_with(".AppDir");
}

} // namespace taliro
