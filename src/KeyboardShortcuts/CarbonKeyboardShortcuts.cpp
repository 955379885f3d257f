#include "KeyboardShortcuts/CarbonKeyboardShortcuts.h"

#include "platform/SystemShortcuts.h"

#include <cstdio>
#include <limits>

namespace taliro {

namespace {

/// The status of what is refused before the system is asked.
constexpr int invalidHotKey = -9879;

/// A shortcut that would swallow plain typing, a modifier key, or what isn't a key code at all comes from a
/// store edited by hand.
bool mayBeHotKey(Shortcut const& shortcut) {
    auto const code = shortcut.carbonKeyCode();
    return code >= 0 && code <= std::numeric_limits<std::uint32_t>::max() && shortcut.isApartFromTyping() &&
           !isModifierKey(shortcut.key());
}

} // namespace

CarbonKeyboardShortcuts::CarbonKeyboardShortcuts(HotKeys& hotKeys, KeyboardLayout& layout,
                                                 SystemShortcuts& systemShortcuts)
    : m_system(hotKeys), m_layout(layout), m_systemShortcuts(systemShortcuts) {}

CarbonKeyboardShortcuts::~CarbonKeyboardShortcuts() {
    if (!m_hasEventHandler)
        return;
    receiveRawKeys(false);
    m_system.setHandler(nullptr);
}

std::unique_ptr<HotKeys::Registration> CarbonKeyboardShortcuts::registerWithSystem(Shortcut const& shortcut,
                                                                                   std::uint32_t id) {
    int status = invalidHotKey;
    if (mayBeHotKey(shortcut)) {
        auto registration =
            m_system.registerHotKey(static_cast<std::uint32_t>(shortcut.carbonKeyCode()),
                                    static_cast<std::uint32_t>(shortcut.carbonModifiers()), id);
        if (registration)
            return std::move(*registration);
        status = registration.error();
    }
    std::printf("Error registering hotkey %s: %d\n", shortcut.presentableDescription(m_layout).c_str(),
                status);
    std::fflush(stdout);
    return nullptr;
}

void CarbonKeyboardShortcuts::registerShortcut(Shortcut const& shortcut, Action onKeyDown, Action onKeyUp) {
    auto const id = ++m_hotKeyId;
    auto registration = registerWithSystem(shortcut, id);
    if (!registration)
        return;
    m_hotKeys.emplace(id,
                      HotKey{shortcut, std::move(registration), std::move(onKeyDown), std::move(onKeyUp)});
    if (m_hasEventHandler)
        return;
    m_hasEventHandler = true;
    m_system.setHandler(
        [this](std::uint32_t hotKey, HotKeys::Phase phase) { return handleHotKeyEvent(hotKey, phase); });
    updateEventHandler(m_isEnabled, m_isMenuOpen);
}

void CarbonKeyboardShortcuts::unregister(Shortcut const& shortcut) {
    std::erase_if(m_hotKeys, [&](auto const& entry) { return entry.second.shortcut == shortcut; });
}

void CarbonKeyboardShortcuts::updateEventHandler(bool isEnabled, bool isMenuOpen) {
    m_isEnabled = isEnabled;
    m_isMenuOpen = isMenuOpen;
    if (!m_hasEventHandler)
        return;
    bool const systemHotKeys = isEnabled && !isMenuOpen;
    if (systemHotKeys) {
        receiveRawKeys(false);
        softRegisterAll();
    } else {
        receiveRawKeys(isEnabled);
        releaseAll();
    }
    m_receivesHotKeys = systemHotKeys;
}

void CarbonKeyboardShortcuts::softRegisterAll() {
    for (auto entry = m_hotKeys.begin(); entry != m_hotKeys.end();) {
        auto& [id, hotKey] = *entry;
        if (!hotKey.carbonHotKey)
            hotKey.carbonHotKey = registerWithSystem(hotKey.shortcut, id);
        entry = hotKey.carbonHotKey ? std::next(entry) : m_hotKeys.erase(entry);
    }
}

void CarbonKeyboardShortcuts::releaseAll() {
    for (auto& [id, hotKey] : m_hotKeys)
        hotKey.carbonHotKey.reset();
}

void CarbonKeyboardShortcuts::receiveRawKeys(bool receive) {
    if (receive)
        m_system.setRawKeyHandler([this](HotKeys::RawKey const& event) { return handleRawKeyEvent(event); });
    else
        m_system.setRawKeyHandler(nullptr);
}

bool CarbonKeyboardShortcuts::handleHotKeyEvent(std::uint32_t id, HotKeys::Phase phase) {
    auto const found = m_hotKeys.find(id);
    if (!m_receivesHotKeys || found == m_hotKeys.end())
        return false;
    // Copied, since an action may change the shortcut that it is called for.
    auto const shortcut = found->second.shortcut;
    auto const action = phase == HotKeys::Phase::pressed ? found->second.onKeyDown : found->second.onKeyUp;
    action(shortcut);
    return true;
}

bool CarbonKeyboardShortcuts::handleRawKeyEvent(HotKeys::RawKey const& event) {
    Shortcut const shortcut(event.keyCode, event.carbonModifiers);
    auto const found =
        std::ranges::find_if(m_hotKeys, [&](auto const& entry) { return entry.second.shortcut == shortcut; });
    if (found == m_hotKeys.end())
        return false;
    if (event.phase == HotKeys::RawKey::Phase::repeat)
        return true;
    auto const action =
        event.phase == HotKeys::RawKey::Phase::down ? found->second.onKeyDown : found->second.onKeyUp;
    action(shortcut);
    return true;
}

std::vector<Shortcut> CarbonKeyboardShortcuts::system() const {
    std::vector<Shortcut> shortcuts;
    for (auto const& entry : m_systemShortcuts.enabled())
        shortcuts.emplace_back(entry.keyCode, entry.carbonModifiers);
    return shortcuts;
}

} // namespace taliro
