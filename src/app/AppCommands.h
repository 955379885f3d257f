#pragma once

#include <functional>

namespace taliro {

/// What menus in several places offer. A command that is absent shows as disabled.
struct AppCommands {
    std::function<void()> showPreferences;
    std::function<void()> checkForUpdates;
    std::function<void()> quit;

    static AppCommands& shared();
};

} // namespace taliro
