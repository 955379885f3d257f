#pragma once

#include "foundation/Url.h"

#include <string>
#include <string_view>
#include <vector>

namespace taliro {

struct Platform;

/// `~` and `~/…` with the user's home folder in its place. Other users' homes are left as typed.
std::string expandingTilde(std::string_view path, Url const& home);

/// Folders that a path being typed may go on to.
namespace PathCompletion {

inline constexpr std::size_t mostSuggestions = 8;

/// In name order: the subfolders of a folder named whole, or those of the parent whose names begin as typed.
/// Hidden ones are offered once the name typed begins with a dot.
std::vector<Url> suggestions(Platform& platform, std::string_view text);

} // namespace PathCompletion

} // namespace taliro
