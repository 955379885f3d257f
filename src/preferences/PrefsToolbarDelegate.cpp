#include "preferences/PrefsToolbarDelegate.h"

namespace taliro {

std::vector<std::string_view> const& PrefsToolbarDelegate::allItemIdentifiers() {
    static auto const identifiers = [] {
        std::vector<std::string_view> all;
        for (auto const tab : preferencesTabs)
            all.push_back(rawValue(tab));
        return all;
    }();
    return identifiers;
}

std::optional<PrefsToolbarDelegate::Item> PrefsToolbarDelegate::item(std::string_view identifier) {
    auto const tab = preferencesTab(identifier);
    if (!tab)
        return std::nullopt;
    switch (*tab) {
    case PreferencesTab::general:
        return Item{rawValue(*tab), "General", "gearshape"};
    case PreferencesTab::appearance:
        return Item{rawValue(*tab), "Appearance", "macwindow"};
    case PreferencesTab::advanced:
        return Item{rawValue(*tab), "Advanced", "wrench.and.screwdriver"};
    }
    return std::nullopt;
}

void PrefsToolbarDelegate::toolbarItemSelected(std::string_view identifier) {
    if (auto const tab = preferencesTab(identifier))
        m_selection.current = *tab;
}

} // namespace taliro
