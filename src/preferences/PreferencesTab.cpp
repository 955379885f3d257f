#include "preferences/PreferencesTab.h"

#include <algorithm>

namespace taliro {

std::string_view rawValue(PreferencesTab tab) {
    switch (tab) {
    case PreferencesTab::general:
        return "general";
    case PreferencesTab::appearance:
        return "appearance";
    case PreferencesTab::advanced:
        return "advanced";
    }
    return {};
}

std::optional<PreferencesTab> preferencesTab(std::string_view text) {
    auto const* found =
        std::ranges::find(preferencesTabs, text, [](PreferencesTab tab) { return rawValue(tab); });
    return found == preferencesTabs.end() ? std::nullopt : std::optional(*found);
}

PreferencesTabSelection& PreferencesTabSelection::shared() {
    static PreferencesTabSelection selection;
    return selection;
}

} // namespace taliro
