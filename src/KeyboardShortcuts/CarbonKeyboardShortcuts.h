#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "platform/HotKeys.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace taliro {

class SystemShortcuts;

/// The system's hot keys behind the shortcuts: one record a registered shortcut. Disabled, or while a menu is
/// open, the records stay and the system's hot keys are given back; a menu's keys are then looked through
/// instead.
class CarbonKeyboardShortcuts {
public:
    using Action = std::function<void(Shortcut const&)>;

    CarbonKeyboardShortcuts(HotKeys& hotKeys, KeyboardLayout& layout, SystemShortcuts& systemShortcuts);
    ~CarbonKeyboardShortcuts();
    CarbonKeyboardShortcuts(CarbonKeyboardShortcuts const&) = delete;
    CarbonKeyboardShortcuts& operator=(CarbonKeyboardShortcuts const&) = delete;

    /// A refused one is reported by one line on standard output and leaves no record.
    void registerShortcut(Shortcut const& shortcut, Action onKeyDown, Action onKeyUp);
    void unregister(Shortcut const& shortcut);
    /// Switches the way keys are received. Has no effect before the first successful registration.
    void updateEventHandler(bool isEnabled, bool isMenuOpen);

    bool forbidsOptionAlone() const { return m_system.forbidsOptionAlone(); }
    /// The desktop's own shortcuts.
    std::vector<Shortcut> system() const;

private:
    struct HotKey {
        Shortcut shortcut;
        std::unique_ptr<HotKeys::Registration> carbonHotKey; ///< absent while given back
        Action onKeyDown;
        Action onKeyUp;
    };

    std::unique_ptr<HotKeys::Registration> registerWithSystem(Shortcut const& shortcut, std::uint32_t id);
    void softRegisterAll();
    void releaseAll();
    void receiveRawKeys(bool receive);
    bool handleHotKeyEvent(std::uint32_t id, HotKeys::Phase phase);
    bool handleRawKeyEvent(HotKeys::RawKey const& event);

    HotKeys& m_system;
    KeyboardLayout& m_layout;
    SystemShortcuts& m_systemShortcuts;
    std::map<std::uint32_t, HotKey> m_hotKeys;
    std::uint32_t m_hotKeyId = 0; ///< the last one given out; never reused
    bool m_isEnabled = true;
    bool m_isMenuOpen = false;
    bool m_hasEventHandler = false;
    bool m_receivesHotKeys = false;
};

} // namespace taliro
