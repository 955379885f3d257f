#pragma once

#include <functional>

namespace taliro {

class UserDefaults;

/// Clears what early versions stored in forms that are no longer read. Each step runs once for a user and
/// never again. `setDefaultShortcut` stores the shortcut that the browser is called by at first.
void resetToFactoryDefaultsIfNeeded(UserDefaults& defaults, std::function<void()> const& setDefaultShortcut);

} // namespace taliro
