#pragma once

#include <cstdint>

namespace taliro {

/// Goes to the player first, followed by the file's path.
struct PlayerRequest {
    std::int32_t width = 0;       ///< pixels that a film's pictures may take at most
    std::int32_t height = 0;      ///< pixels
    std::uint32_t pathLength = 0; ///< bytes
};

struct PlayerCommand {
    enum class Action : std::uint32_t { play, pause, seek, mute, unmute };
    Action action = Action::play;
    std::int64_t milliseconds = 0; ///< where to, for `seek`
};

/// Comes back whenever something changed. With a width it brings a picture and nothing else: width × height
/// premultiplied 32-bit pixels follow.
struct PlayerReport {
    std::int64_t position = 0; ///< milliseconds
    std::int64_t duration = 0; ///< milliseconds
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint32_t phase = 0; ///< a PlaybackState::Phase
    std::uint32_t isMuted = 0;
};

inline constexpr std::uint32_t longestPlayerPath = 64 * 1024; ///< bytes
inline constexpr std::int32_t longestFilmSide = 4096;         ///< pixels

} // namespace taliro
