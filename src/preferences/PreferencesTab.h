#pragma once

#include "foundation/Published.h"

#include <array>
#include <optional>
#include <string_view>

namespace taliro {

/// The pages of the preferences window, in their order.
enum class PreferencesTab { general, appearance, advanced };

inline constexpr std::array preferencesTabs{PreferencesTab::general, PreferencesTab::appearance,
                                            PreferencesTab::advanced};

/// "general", "appearance" or "advanced".
std::string_view rawValue(PreferencesTab tab);
/// Nothing for any other text.
std::optional<PreferencesTab> preferencesTab(std::string_view rawValue);

/// The page shown now and when the window opens next; forgotten when the program ends.
struct PreferencesTabSelection {
    Published<PreferencesTab> current{PreferencesTab::general};

    static PreferencesTabSelection& shared();
};

} // namespace taliro
