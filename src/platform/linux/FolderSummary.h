#pragma once

#include "platform/PreviewService.h"

#include <functional>
#include <stop_token>
#include <string>

namespace taliro {

/// Counts what is below the folder, on its own file system, without following links. `update` hears of the
/// counts so far several times a second, and once when finished; not after a stop.
void summarizeFolder(std::string const& path, std::function<void(ContentSummary const&)> const& update,
                     std::stop_token stop);

} // namespace taliro
