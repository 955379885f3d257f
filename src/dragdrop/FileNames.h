#pragma once

#include "foundation/Text.h"
#include "foundation/Url.h"

#include <optional>
#include <string>
#include <string_view>

namespace taliro {

class FileManager;

/// "image-2026-11-16T13-48-49Z.png": what dropped data is called. The time is told in UTC.
std::string timeStampedName(std::string_view base, Date now, std::string_view extension);

/// `name` in `folder`, or "stem 2.ext", "stem 3.ext", … where it is taken.
Url uniqueDestination(FileManager& fileManager, std::string_view name, Url const& folder);

/// The file name that a server suggests by its `Content-Disposition` header (RFC 6266, with the encodings of
/// RFC 5987), as written there. Nothing where it names none.
std::optional<std::string> suggestedFileName(std::string_view contentDisposition);

/// Someone else's name made harmless: only the part behind the last slash or backslash, no control
/// characters, no dot in front, at most 255 bytes of valid UTF-8 with the extension kept. Nothing where
/// nothing is left.
std::optional<std::string> plainFileName(std::string_view name);

/// What the file downloaded from `link` is called: as the server suggests, else as the link says, else
/// "download".
std::string downloadName(std::string_view contentDisposition, Url const& link);

} // namespace taliro
