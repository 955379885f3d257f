#pragma once

#include <cstdint>
#include <vector>

namespace taliro {

/// The key combinations that the desktop itself reacts to.
class SystemShortcuts {
public:
    struct Entry {
        std::int64_t keyCode = 0; ///< physical key by its US-ANSI position
        std::int64_t carbonModifiers = 0;
        bool operator==(Entry const&) const = default;
    };
    virtual ~SystemShortcuts() = default;
    /// Those in force now; empty where the desktop doesn't tell.
    virtual std::vector<Entry> enabled() = 0;
};

} // namespace taliro
