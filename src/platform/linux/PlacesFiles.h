#pragma once

#include "platform/DesktopPlaces.h"

#include <string_view>
#include <vector>

namespace taliro {

/// GTK's bookmarks: a line each, a URI and, after a space, a label.
std::vector<DesktopPlace> parseGtkBookmarks(std::string_view bytes);
/// KDE's places, in XBEL; those that the user has hidden are left out. What comes before a fault in the XML
/// counts.
std::vector<DesktopPlace> parseKdePlaces(std::string_view bytes);

} // namespace taliro
