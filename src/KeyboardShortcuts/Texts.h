#pragma once

#include <string_view>

/// What the recorder and its alerts say.
namespace taliro::texts {

inline constexpr std::string_view spaceKey = "Space";
inline constexpr std::string_view recordShortcut = "Record Shortcut";
inline constexpr std::string_view pressShortcut = "Press Shortcut";
inline constexpr std::string_view usedBySystem = "This keyboard shortcut is already used by your desktop.";
inline constexpr std::string_view systemShortcutsCanBeChanged =
    "Most of the desktop’s shortcuts can be changed in its keyboard settings.";
inline constexpr std::string_view ok = "OK";
inline constexpr std::string_view forceUse = "Use Anyway";
inline constexpr std::string_view optionAloneDisallowed =
    "Option alone can’t be used here: add Control or Command to the shortcut.";
/// Followed by the menu item's title and `usedByMenuItemEnd`.
inline constexpr std::string_view usedByMenuItem =
    "This keyboard shortcut is already used by the menu item “";
inline constexpr std::string_view usedByMenuItemEnd = "”.";

} // namespace taliro::texts
