#pragma once

#include "preferences/PreferencesTab.h"

#include <string_view>
#include <vector>

namespace taliro {

/// What the preferences' toolbar offers: an item for each tab, and what choosing one does.
class PrefsToolbarDelegate {
public:
    struct Item {
        std::string_view identifier;
        std::string_view label;
        std::string_view symbol;
    };

    explicit PrefsToolbarDelegate(PreferencesTabSelection& selection) : m_selection(selection) {}

    /// The tabs' texts, in their order.
    static std::vector<std::string_view> const& allItemIdentifiers();
    /// Nothing where no tab is called so.
    static std::optional<Item> item(std::string_view identifier);
    /// Shows the tab of that name; does nothing where there is none.
    void toolbarItemSelected(std::string_view identifier);

private:
    PreferencesTabSelection& m_selection;
};

} // namespace taliro
