#pragma once

#include "foundation/Url.h"

#include <vector>

namespace taliro {

class BrowserState;
class FileManager;

/// Shows each of `urls` in `browser` in turn: a folder itself, another item selected in its folder. Only an
/// address's path is looked at; what isn't there is passed over.
void showRequested(std::vector<Url> const& urls, BrowserState& browser, FileManager& files);

} // namespace taliro
