#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <system_error>

namespace taliro {

/// Puts `bytes` under `path` in one step: whoever reads it, whenever the power goes, finds the old content
/// whole or the new. Follows a symbolic link at `path`. A new file gets `mode`, an old one keeps its own.
std::expected<void, std::errc> writeFileAtomically(std::string const& path, std::string_view bytes,
                                                   unsigned mode);

/// Makes the folder and those above it as needed, with `mode`.
std::expected<void, std::errc> makeFolders(std::string const& path, unsigned mode);

} // namespace taliro
