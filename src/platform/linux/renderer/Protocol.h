#pragma once

#include <cstddef>
#include <cstdint>

namespace taliro {

/// What the renderer process knows how to draw.
enum class RenderKind : std::uint32_t { drawing, document, text, font, program, archive };

/// Goes to the renderer, followed by the file's path and the command.
struct RenderRequest {
    RenderKind kind = RenderKind::drawing;
    std::int32_t width = 0;  ///< pixels that the picture may take at most
    std::int32_t height = 0; ///< pixels
    std::int32_t page = 0;
    std::uint32_t pathLength = 0;    ///< bytes
    std::uint32_t commandLength = 0; ///< bytes of a thumbnailer's command line, for `program`
};

/// Comes back, followed by width × height premultiplied 32-bit pixels. Without a width there is no picture.
struct RenderReply {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t pages = 0;
};

/// Comes back for an archive, any number of times, followed by the name of an outermost item, if any.
/// The last one says `finished` and has no name.
struct SummaryReply {
    std::int64_t files = 0;
    std::int64_t folders = 0;
    std::int64_t bytes = 0;
    std::uint32_t nameLength = 0; ///< bytes
    std::uint16_t finished = 0;
    std::uint16_t damaged = 0;
};

/// Sent by the renderer once it is ready to draw.
inline constexpr std::uint32_t rendererGreeting = 0x54414C52;
inline constexpr std::size_t mostNames = 12;
inline constexpr std::int32_t longestSide = 8192;       ///< pixels
inline constexpr std::uint32_t longestText = 64 * 1024; ///< bytes of a path or a command

} // namespace taliro
