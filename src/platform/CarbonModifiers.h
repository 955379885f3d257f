#pragma once

#include <cstdint>

/// The bits that modifier keys have in the masks that shortcuts are stored and registered with. The keys of a
/// common keyboard that they stand for: Super is command, Alt is option.
namespace taliro::carbonMask {

inline constexpr std::int64_t command = 0x100;
inline constexpr std::int64_t shift = 0x200;
inline constexpr std::int64_t option = 0x800;
inline constexpr std::int64_t control = 0x1000;
inline constexpr std::int64_t function = 0x20000;

} // namespace taliro::carbonMask
