#include "app/FactoryReset.h"

#include "platform/UserDefaults.h"

namespace taliro {

namespace {

void resetFavorites(UserDefaults& defaults) {
    for (auto const* key : {"syncFavoritesWithFinder", "userFavoriteBookmarks", "userFavoritesSeeded",
                            "dismissedSyncSuggestion"})
        defaults.remove(key);
}

void once(UserDefaults& defaults, char const* marker, std::function<void()> const& step) {
    if (defaults.boolean(marker))
        return;
    step();
    defaults.setBoolean(marker, true);
}

} // namespace

void resetToFactoryDefaultsIfNeeded(UserDefaults& defaults, std::function<void()> const& setDefaultShortcut) {
    once(defaults, "factoryResetMarker_v1", [&] { resetFavorites(defaults); });
    once(defaults, "factoryResetMarker_v3", [&] {
        defaults.remove("KeyboardShortcuts_togglePicker");
        setDefaultShortcut();
    });
}

} // namespace taliro
