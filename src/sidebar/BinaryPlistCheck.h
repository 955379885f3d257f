#pragma once

#include <string_view>

namespace taliro {

/// Whether `bytes` are a sound binary property list that is cheap to read: every object and reference lies
/// within the bytes, nothing contains itself, nesting is shallow, and the whole stays small when shared
/// objects are copied to each place that refers to them. For bytes from elsewhere, before they go to a
/// parser.
bool isSoundBinaryPlist(std::string_view bytes);

} // namespace taliro
