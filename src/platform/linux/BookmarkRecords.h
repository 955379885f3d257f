#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace taliro {

/// Whether the bytes begin as a desktop bookmark in the record layout does.
bool isBookmarkRecords(std::span<std::uint8_t const> bytes);

/// The absolute path that such a bookmark was made for. The layout, all numbers little-endian and of 32 bits:
/// a header ("book", length, version, offset of the data), then the data: the offset of the first table of
/// contents and the records (length, type, content), each offset counted from the data's start. A table
/// (length, mark, level, offset of the next, count) holds entries of key, offset and flags. The path is a
/// record of type array under its own key: offsets of strings, one a component. Nothing where the bytes are
/// not so.
std::optional<std::string> pathOfBookmarkRecords(std::span<std::uint8_t const> bytes);

} // namespace taliro
