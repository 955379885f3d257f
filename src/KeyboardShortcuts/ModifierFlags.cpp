#include "KeyboardShortcuts/ModifierFlags.h"

#include <array>
#include <string_view>

namespace taliro {

namespace {

struct Modifier {
    ModifierFlags flag;
    std::int64_t carbon;
    std::string_view symbol;
};

constexpr std::array modifiers{
    // in the order they are shown
    Modifier{ModifierFlags::control, carbonMask::control, "\u2303"},
    Modifier{ModifierFlags::option, carbonMask::option, "\u2325"},
    Modifier{ModifierFlags::shift, carbonMask::shift, "\u21E7"},
    Modifier{ModifierFlags::command, carbonMask::command, "\u2318"},
    Modifier{ModifierFlags::function, carbonMask::function, "\U0001F310\uFE0E"},
};

} // namespace

ModifierFlags ModifierFlags::fromCarbon(std::int64_t mask) {
    ModifierFlags flags;
    for (auto const& modifier : modifiers)
        if (mask & modifier.carbon)
            flags |= modifier.flag;
    return flags;
}

std::int64_t ModifierFlags::carbon() const {
    std::int64_t mask = 0;
    for (auto const& modifier : modifiers)
        if (contains(modifier.flag))
            mask |= modifier.carbon;
    return mask;
}

std::string ModifierFlags::ks_symbolicRepresentation() const {
    std::string symbols;
    for (auto const& modifier : modifiers)
        if (contains(modifier.flag))
            symbols += modifier.symbol;
    return symbols;
}

std::int64_t normalizedCarbonModifiers(std::int64_t mask) {
    return ModifierFlags::fromCarbon(mask).carbon();
}

} // namespace taliro
