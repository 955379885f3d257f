#pragma once

#include "platform/HotKeys.h"
#include "platform/linux/MenuKeys.h"
#include "platform/linux/XKeyboard.h"

#include <map>
#include <optional>
#include <vector>

namespace taliro {

/// Hot keys as passive grabs of the X server.
class X11HotKeys : public HotKeys {
public:
    X11HotKeys(XKeyboard& keyboard, KeyboardLayout& layout);

    std::expected<std::unique_ptr<Registration>, int>
    registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, std::uint32_t id) override;
    void setHandler(Handler handler) override { m_handler = std::move(handler); }
    void setRawKeyHandler(RawKeyHandler handler) override { m_menuKeys.setHandler(std::move(handler)); }

private:
    using Combination = XKeyboard::Combination;
    struct HotKey {
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
        std::optional<Combination> grabbed;
    };
    class Grab;

    std::expected<Combination, int> combination(std::uint32_t keyCode, std::uint32_t carbonModifiers) const;
    std::expected<Combination, int> grab(std::uint32_t keyCode, std::uint32_t carbonModifiers);
    void release(std::uint32_t id);
    void followMap();
    void hear(XKeyboard::KeyEvent const& event);
    std::vector<std::uint32_t> pressedBy(XKeyboard::KeyEvent const& event) const;

    XKeyboard& m_keyboard;
    MenuKeys m_menuKeys;
    std::map<std::uint32_t, HotKey> m_hotKeys;                 ///< by id
    std::map<Combination, int> m_holders;                      ///< how many hot keys share a grab
    std::map<std::uint8_t, std::vector<std::uint32_t>> m_down; ///< ids pressed by a key that is held
    Handler m_handler;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
    Subscription m_keyEvents;
    Subscription m_mapChanges;
};

} // namespace taliro
