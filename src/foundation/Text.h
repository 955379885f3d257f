#pragma once

#include <chrono>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

/// A point in time as file systems keep it.
using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

// Comparison and case mapping in the user's locale. Texts are UTF-8; bytes that are not compare as U+FFFD.

/// The user's order of names, letter case ignored.
std::strong_ordering localizedCaseInsensitiveCompare(std::string_view a, std::string_view b);
std::string lowercased(std::string_view text);
/// The first letter of each word in upper case, the others in lower case.
std::string capitalized(std::string_view text);
/// The characters as a reader counts them: combining marks stay with what they mark.
std::vector<std::string> characters(std::string_view text);
/// Whether the lowercased `text` contains `lowercasedPart` literally.
bool containsLowercased(std::string_view text, std::string_view lowercasedPart);

/// Appends bytes to `key` that order as `localizedCaseInsensitiveCompare` orders the texts: computed once a
/// name, then compared cheaply.
void appendSortKey(std::string_view text, std::string& key);

/// Spaces and tabs taken off both ends, line breaks kept.
std::string_view trimmingWhitespace(std::string_view text);
std::string_view trimmingWhitespaceAndNewlines(std::string_view text);

bool isValidUtf8(std::string_view bytes);
/// Other letters than A to Z stay as they are.
std::string lowercasedAscii(std::string_view text);
/// A name for reading: bytes that are not UTF-8 as U+FFFD, control characters as their visible pictures.
std::string legible(std::string_view bytes);

/// "Zero KB", "1 byte", "999 bytes", "1 KB", "2.4 MB": decimal units, the user's decimal separator.
std::string byteCountText(std::int64_t bytes);
/// Medium date with short time in the user's locale and time zone.
std::string dateText(Date date);
/// A whole number with the user's digit grouping.
std::string numberText(std::int64_t number);

} // namespace taliro
