#pragma once

#include <cstdint>
#include <optional>
#include <span>

struct xkb_keymap;

namespace taliro {

/// A key code of the US-ANSI position and the name that X keyboard maps have for the key there.
struct PhysicalKey {
    std::int64_t keyCode;
    char const* xkbName;
};
std::span<PhysicalKey const> physicalKeys();

/// The keyboard's own number of the physical key; nothing where the keyboard hasn't got it.
std::optional<std::uint32_t> nativeScanCode(xkb_keymap* keymap, std::int64_t keyCode);
std::optional<std::int64_t> physicalKeyCode(xkb_keymap* keymap, std::uint32_t nativeScanCode);

} // namespace taliro
