#pragma once

#include "foundation/Text.h"

#include <algorithm>
#include <cstdint>

namespace taliro {

/// Seconds and nanoseconds since 1970 as others keep them, any of them, within what a `Date` holds.
inline Date dateFrom(std::int64_t seconds, std::int64_t nanoseconds) {
    constexpr std::int64_t perSecond = 1'000'000'000;
    constexpr auto most = Date::max().time_since_epoch().count() / perSecond - 1;
    return Date(std::chrono::nanoseconds(std::clamp(seconds, -most, most) * perSecond +
                                         std::clamp(nanoseconds, std::int64_t{0}, perSecond - 1)));
}

} // namespace taliro
