#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include "foundation/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"

namespace taliro {

KeyboardShortcuts::KeyboardShortcuts(UserDefaults& defaults, HotKeys& hotKeys, KeyboardLayout& layout,
                                     SystemShortcuts& systemShortcuts)
    : m_defaults(defaults), m_layout(layout), m_carbon(hotKeys, layout, systemShortcuts) {}

KeyboardShortcuts& KeyboardShortcuts::shared() {
    // Never destroyed: what it stands on goes before any static object does.
    static auto& shortcuts = *[] {
        auto& platform = Platform::current();
        return new KeyboardShortcuts(platform.userDefaults, platform.hotKeys, platform.keyboardLayout,
                                     platform.systemShortcuts);
    }();
    return shortcuts;
}

Name KeyboardShortcuts::name(std::string rawValue, std::optional<Shortcut> defaultShortcut) {
    Name const name(std::move(rawValue), defaultShortcut);
    if (defaultShortcut && !userDefaultsContains(name))
        userDefaultsSet(name, *defaultShortcut);
    initialize();
    return name;
}

void KeyboardShortcuts::initialize() {
    if (m_isInitialized)
        return;
    m_isInitialized = true;
    auto& center = NotificationCenter::standard();
    m_openMenuObserver = center.observe(menuDidBeginTracking, [this](auto const&) { setMenuOpen(true); });
    m_closeMenuObserver = center.observe(menuDidEndTracking, [this](auto const&) { setMenuOpen(false); });
}

void KeyboardShortcuts::setMenuOpen(bool open) {
    if (open == m_isMenuOpen)
        return;
    m_isMenuOpen = open;
    m_carbon.updateEventHandler(m_isEnabled, m_isMenuOpen);
}

void KeyboardShortcuts::setEnabled(bool enabled) {
    if (enabled == m_isEnabled)
        return;
    m_isEnabled = enabled;
    m_carbon.updateEventHandler(m_isEnabled, m_isMenuOpen);
}

std::optional<Shortcut> KeyboardShortcuts::getShortcut(Name const& name) const {
    auto const stored = m_defaults.string(name.defaultsKey());
    return stored ? decodeShortcut(*stored) : std::nullopt;
}

bool KeyboardShortcuts::userDefaultsContains(Name const& name) const {
    return m_defaults.object(name.defaultsKey()).has_value();
}

void KeyboardShortcuts::setShortcut(std::optional<Shortcut> const& shortcut, Name const& name) {
    if (shortcut)
        userDefaultsSet(name, *shortcut);
    else
        userDefaultsRemove(name);
}

void KeyboardShortcuts::userDefaultsSet(Name const& name, Shortcut const& shortcut) {
    if (auto const former = getShortcut(name))
        unregister(*former);
    registerIfNeeded(shortcut);
    m_defaults.setString(name.defaultsKey(), encode(shortcut));
    NotificationCenter::standard().post(shortcutByNameDidChange, {}, {{"name", name}});
}

void KeyboardShortcuts::userDefaultsRemove(Name const& name) {
    auto const former = getShortcut(name);
    if (!former)
        return;
    if (name.defaultShortcut())
        m_defaults.setBoolean(name.defaultsKey(), false); // keeps the default from coming back
    else
        m_defaults.remove(name.defaultsKey());
    unregister(*former);
    NotificationCenter::standard().post(shortcutByNameDidChange, {}, {{"name", name}});
}

void KeyboardShortcuts::reset(std::vector<Name> const& names) {
    for (auto const& name : names)
        setShortcut(name.defaultShortcut(), name);
}

void KeyboardShortcuts::registerIfNeeded(Shortcut const& shortcut) {
    if (!m_registeredShortcuts.insert(shortcut).second)
        return;
    m_carbon.registerShortcut(
        shortcut, [this](Shortcut const& pressed) { dispatch(m_keyDown, pressed); },
        [this](Shortcut const& released) { dispatch(m_keyUp, released); });
}

void KeyboardShortcuts::registerIfNeeded(Name const& name) {
    if (auto const shortcut = getShortcut(name))
        registerIfNeeded(*shortcut);
}

void KeyboardShortcuts::unregister(Shortcut const& shortcut) {
    m_carbon.unregister(shortcut);
    m_registeredShortcuts.erase(shortcut);
}

void KeyboardShortcuts::onKeyDown(Name const& name, Action action) {
    m_keyDown.legacy[name].push_back(std::move(action));
    registerIfNeeded(name);
}

void KeyboardShortcuts::onKeyUp(Name const& name, Action action) {
    m_keyUp.legacy[name].push_back(std::move(action));
    registerIfNeeded(name);
}

Subscription KeyboardShortcuts::events(Name const& name, std::function<void(EventType)> observer) {
    auto const id = m_nextStream++;
    m_keyDown.stream[name].emplace(id, [observer] { observer(EventType::keyDown); });
    m_keyUp.stream[name].emplace(id, [observer] { observer(EventType::keyUp); });
    registerIfNeeded(name);
    return Subscription([this, alive = std::weak_ptr(m_alive), name, id] {
        if (alive.expired())
            return;
        m_keyDown.stream[name].erase(id);
        m_keyUp.stream[name].erase(id);
    });
}

void KeyboardShortcuts::dispatch(Handlers const& handlers, Shortcut const& shortcut) {
    if (isPaused)
        return;
    std::vector<Action> actions; // Gathered first, since an action may add others or change shortcuts.
    for (auto const& [name, list] : handlers.legacy)
        if (getShortcut(name) == shortcut)
            actions.insert(actions.end(), list.begin(), list.end());
    for (auto const& [name, streams] : handlers.stream)
        if (!streams.empty() && getShortcut(name) == shortcut)
            for (auto const& [id, action] : streams)
                actions.push_back(action);
    for (auto const& action : actions)
        action();
}

std::string KeyboardShortcuts::presentableDescription(Shortcut const& shortcut) const {
    return shortcut.presentableDescription(m_layout);
}

Name togglePicker(KeyboardShortcuts& shortcuts) {
    return shortcuts.name("togglePicker", Shortcut(Key::p, ModifierFlags::command | ModifierFlags::option |
                                                               ModifierFlags::control));
}

Name const& togglePicker() {
    static Name const name = togglePicker(KeyboardShortcuts::shared());
    return name;
}

} // namespace taliro
