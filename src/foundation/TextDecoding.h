#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace taliro {

struct DecodedText {
    std::string utf8;
    std::string encoding; ///< "UTF-8", "UTF-16LE", "windows-1252"
};

/// Text of an unknown encoding: told by its byte order mark, else as UTF-8 where it is, else as the most
/// likely encoding of its bytes. Nothing for bytes that are no text. A character cut off at the end is left
/// out.
std::optional<DecodedText> decodeText(std::string_view bytes);

/// What is known to be text, of any common encoding, as UTF-8. A byte order mark decides, then `charset` if
/// given, then the look of the bytes: UTF-8 where valid, UTF-16 where every other byte is zero, Windows-1252
/// (Latin-1) otherwise.
std::string textAsUtf8(std::string_view bytes, std::string_view charset = {});

} // namespace taliro
