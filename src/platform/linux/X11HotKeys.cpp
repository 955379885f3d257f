#include "platform/linux/X11HotKeys.h"

#include "platform/CarbonModifiers.h"
#include "platform/linux/PhysicalKeys.h"

#include <cstdio>
#include <set>

namespace taliro {

namespace {

// X protocol errors
constexpr int badRequest = 1; ///< there is no X server to ask
constexpr int badValue = 2;

} // namespace

class X11HotKeys::Grab : public Registration {
public:
    Grab(X11HotKeys& owner, std::uint32_t id) : m_owner(owner), m_ownerAlive(owner.m_alive), m_id(id) {}
    ~Grab() override {
        if (!m_ownerAlive.expired())
            m_owner.release(m_id);
    }

private:
    X11HotKeys& m_owner;
    std::weak_ptr<bool> m_ownerAlive;
    std::uint32_t m_id;
};

X11HotKeys::X11HotKeys(XKeyboard& keyboard, KeyboardLayout& layout)
    : m_keyboard(keyboard),
      m_menuKeys(layout),
      m_keyEvents(keyboard.keyEvents.add([this](XKeyboard::KeyEvent const& event) { hear(event); })),
      m_mapChanges(keyboard.mapChanged.add([this] { followMap(); })) {}

std::expected<X11HotKeys::Combination, int> X11HotKeys::combination(std::uint32_t keyCode,
                                                                    std::uint32_t carbonModifiers) const {
    if (!m_keyboard.isConnected())
        return std::unexpected(badRequest);
    auto const key = nativeScanCode(m_keyboard.keymap(), keyCode);
    if (!key || *key > 0xFF)
        return std::unexpected(badValue);
    auto const bits = m_keyboard.modifierBits();
    struct Modifier {
        std::int64_t carbon;
        std::uint16_t x;
    };
    std::uint16_t modifiers = 0;
    for (auto const& [carbon, x] :
         {Modifier{carbonMask::control, XCB_MOD_MASK_CONTROL}, Modifier{carbonMask::option, bits.alt},
          Modifier{carbonMask::shift, XCB_MOD_MASK_SHIFT}, Modifier{carbonMask::command, bits.super},
          Modifier{carbonMask::function, 0}}) {
        if ((carbonModifiers & carbon) == 0)
            continue;
        if (x == 0)
            return std::unexpected(badValue); // No key of this keyboard is that modifier.
        modifiers |= x;
    }
    return m_keyboard.combination(static_cast<std::uint8_t>(*key), modifiers);
}

std::expected<X11HotKeys::Combination, int> X11HotKeys::grab(std::uint32_t keyCode,
                                                             std::uint32_t carbonModifiers) {
    auto const wanted = combination(keyCode, carbonModifiers);
    if (!wanted)
        return wanted;
    if (m_holders[*wanted] == 0) {
        if (auto const refused = m_keyboard.grab(*wanted)) {
            m_holders.erase(*wanted);
            return std::unexpected(*refused);
        }
    }
    ++m_holders[*wanted];
    return wanted;
}

std::expected<std::unique_ptr<HotKeys::Registration>, int>
X11HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, std::uint32_t id) {
    auto const grabbed = grab(keyCode, carbonModifiers);
    if (!grabbed)
        return std::unexpected(grabbed.error());
    m_hotKeys[id] = {keyCode, carbonModifiers, *grabbed};
    return std::make_unique<Grab>(*this, id);
}

void X11HotKeys::release(std::uint32_t id) {
    auto const found = m_hotKeys.find(id);
    if (auto const grabbed = found->second.grabbed; grabbed && --m_holders[*grabbed] == 0) {
        m_holders.erase(*grabbed);
        m_keyboard.ungrab(*grabbed);
    }
    m_hotKeys.erase(found);
}

/// Moves the grabs whose key or modifiers have other numbers now.
void X11HotKeys::followMap() {
    auto const former = std::exchange(m_holders, {});
    std::set<Combination> kept;
    for (auto& [id, hotKey] : m_hotKeys) {
        auto const wanted = combination(hotKey.keyCode, hotKey.carbonModifiers);
        if (wanted && hotKey.grabbed == *wanted) {
            ++m_holders[*wanted];
            kept.insert(*wanted);
        }
    }
    for (auto const& [combination, holders] : former)
        if (!kept.contains(combination))
            m_keyboard.ungrab(combination);
    for (auto& [id, hotKey] : m_hotKeys) {
        if (hotKey.grabbed && kept.contains(*hotKey.grabbed))
            continue;
        auto const grabbed = grab(hotKey.keyCode, hotKey.carbonModifiers);
        hotKey.grabbed = grabbed ? std::optional(*grabbed) : std::nullopt;
        if (!grabbed)
            std::fprintf(stderr, "taliro: a hot key is lost to the keyboard's new map (status %d)\n",
                         grabbed.error());
    }
}

void X11HotKeys::hear(XKeyboard::KeyEvent const& event) {
    if (event.isPress && m_down.contains(event.keycode))
        return; // repeated by being held
    auto const ids = event.isPress ? pressedBy(event) : std::exchange(m_down[event.keycode], {});
    if (event.isPress)
        m_down[event.keycode] = ids;
    else
        m_down.erase(event.keycode);
    auto const handler = m_handler; // which a call may replace
    for (auto id : ids)
        if (handler)
            handler(id, event.isPress ? Phase::pressed : Phase::released);
}

std::vector<std::uint32_t> X11HotKeys::pressedBy(XKeyboard::KeyEvent const& event) const {
    auto const bits = m_keyboard.modifierBits();
    auto const held = static_cast<std::uint16_t>(
        event.state & (XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | bits.alt | bits.super));
    std::vector<std::uint32_t> ids;
    for (auto const& [id, hotKey] : m_hotKeys)
        if (hotKey.grabbed && hotKey.grabbed->keycode == event.keycode && hotKey.grabbed->modifiers == held)
            ids.push_back(id);
    return ids;
}

} // namespace taliro
