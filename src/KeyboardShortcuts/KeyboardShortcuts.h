#pragma once

#include "KeyboardShortcuts/CarbonKeyboardShortcuts.h"
#include "KeyboardShortcuts/Name.h"
#include "foundation/Subscription.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace taliro {

class UserDefaults;

/// Global keyboard shortcuts: what each name's is, stored where the user's settings are, and what happens
/// when it is pressed in any program. Stored values that are no shortcut read as none.
class KeyboardShortcuts {
public:
    using Action = std::function<void()>;
    enum class EventType { keyDown, keyUp };

    /// Posted with the user info "name", a `Name`, once its shortcut has changed.
    static constexpr std::string_view shortcutByNameDidChange = "KeyboardShortcuts_shortcutByNameDidChange";
    /// Posted with the user info "isActive", a bool, when a recorder starts and ends.
    static constexpr std::string_view recorderActiveStatusDidChange =
        "KeyboardShortcuts_recorderActiveStatusDidChange";
    /// Posted when the first of our menus opens and the last closes: a menu has the keyboard to itself.
    static constexpr std::string_view menuDidBeginTracking = "NSMenuDidBeginTrackingNotification";
    static constexpr std::string_view menuDidEndTracking = "NSMenuDidEndTrackingNotification";

    KeyboardShortcuts(UserDefaults& defaults, HotKeys& hotKeys, KeyboardLayout& layout,
                      SystemShortcuts& systemShortcuts);
    static KeyboardShortcuts& shared();
    KeyboardShortcuts(KeyboardShortcuts const&) = delete;
    KeyboardShortcuts& operator=(KeyboardShortcuts const&) = delete;

    /// The name `rawValue`. Where nothing at all is stored for it yet, the default is, and works at once.
    Name name(std::string rawValue, std::optional<Shortcut> defaultShortcut = {});

    std::optional<Shortcut> getShortcut(Name const& name) const;
    /// Stores and registers `shortcut`; nothing removes the name's shortcut, for good also where it has a
    /// default.
    void setShortcut(std::optional<Shortcut> const& shortcut, Name const& name);
    /// Each name back to its default.
    void reset(std::vector<Name> const& names);
    /// Whether anything is stored for the name, be it no shortcut.
    bool userDefaultsContains(Name const& name) const;

    /// Actions add up and are called in the order they came.
    void onKeyDown(Name const& name, Action action);
    void onKeyUp(Name const& name, Action action);
    /// Both directions, for as long as the subscription lives.
    [[nodiscard]] Subscription events(Name const& name, std::function<void(EventType)> observer);

    /// Off, all shortcuts are given back to the system.
    bool isEnabled() const { return m_isEnabled; }
    void setEnabled(bool enabled);
    /// While paused the shortcuts are pressed in vain, and reach no other program either.
    bool isPaused = false;

    CarbonKeyboardShortcuts& carbon() { return m_carbon; }
    KeyboardLayout& layout() { return m_layout; }
    /// The shortcut's text in the user's keyboard layout.
    std::string presentableDescription(Shortcut const& shortcut) const;

private:
    /// The actions of one direction.
    struct Handlers {
        std::unordered_map<Name, std::vector<Action>> legacy;
        std::unordered_map<Name, std::map<std::uint64_t, Action>> stream;
    };

    void initialize();
    void setMenuOpen(bool open);
    void userDefaultsSet(Name const& name, Shortcut const& shortcut);
    void userDefaultsRemove(Name const& name);
    void registerIfNeeded(Shortcut const& shortcut);
    void registerIfNeeded(Name const& name);
    void unregister(Shortcut const& shortcut);
    void dispatch(Handlers const& handlers, Shortcut const& shortcut);

    UserDefaults& m_defaults;
    KeyboardLayout& m_layout;
    Handlers m_keyDown;
    Handlers m_keyUp;
    std::uint64_t m_nextStream = 0;
    std::unordered_set<Shortcut> m_registeredShortcuts;
    bool m_isEnabled = true;
    bool m_isMenuOpen = false;
    bool m_isInitialized = false;
    Subscription m_openMenuObserver;
    Subscription m_closeMenuObserver;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
    CarbonKeyboardShortcuts m_carbon;
};

/// The one shortcut of the program, which shows and hides the browser: ⌃⌥⌘P unless the user records another.
Name const& togglePicker();
Name togglePicker(KeyboardShortcuts& shortcuts);

} // namespace taliro
