#pragma once

#include "platform/CarbonModifiers.h"

#include <cstdint>
#include <string>

namespace taliro {

/// The modifier keys of a key event, as Cocoa's flag bits. The Carbon mask, in which shortcuts are stored and
/// registered, has other bits for the same five keys; converting keeps those and drops everything else.
struct ModifierFlags {
    std::uint64_t rawValue = 0;

    static const ModifierFlags capsLock, shift, control, option, command, numericPad, function;

    static ModifierFlags fromCarbon(std::int64_t mask);
    std::int64_t carbon() const;

    /// "⌃⌥⇧⌘🌐︎", those that are set.
    std::string ks_symbolicRepresentation() const;

    constexpr bool contains(ModifierFlags other) const {
        return (rawValue & other.rawValue) == other.rawValue;
    }
    constexpr ModifierFlags without(ModifierFlags other) const { return {rawValue & ~other.rawValue}; }
    constexpr ModifierFlags operator|(ModifierFlags other) const { return {rawValue | other.rawValue}; }
    constexpr ModifierFlags& operator|=(ModifierFlags other) {
        rawValue |= other.rawValue;
        return *this;
    }
    bool operator==(ModifierFlags const&) const = default;
};

inline constexpr ModifierFlags ModifierFlags::capsLock{0x10000};
inline constexpr ModifierFlags ModifierFlags::shift{0x20000};
inline constexpr ModifierFlags ModifierFlags::control{0x40000};
inline constexpr ModifierFlags ModifierFlags::option{0x80000};
inline constexpr ModifierFlags ModifierFlags::command{0x100000};
inline constexpr ModifierFlags ModifierFlags::numericPad{0x200000};
inline constexpr ModifierFlags ModifierFlags::function{0x800000};

/// The five known bits of a Carbon mask.
std::int64_t normalizedCarbonModifiers(std::int64_t mask);

} // namespace taliro
