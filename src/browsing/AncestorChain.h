#pragma once

#include "foundation/Url.h"

#include <string>
#include <vector>

namespace taliro {

/// From `url` up to the root, at most 64 places.
std::vector<Url> ancestorChain(Url const& url);

/// The last part of the path; the whole path where there is none.
std::string displayName(Url const& url);

} // namespace taliro
