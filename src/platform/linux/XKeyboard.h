#pragma once

#include "foundation/Subscription.h"

#include <QTimer>
#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class QSocketNotifier;
struct xkb_context;
struct xkb_keymap;

namespace taliro {

/// The keyboard as the X server has it: the map of its keys, the layout in use, and keys held for us alone.
/// It has a connection of its own, so that nothing else's traffic delays a key. Main thread only.
class XKeyboard {
public:
    /// To the server that `DISPLAY` names; where there is none, the system's own keyboard map stands in.
    XKeyboard();
    ~XKeyboard();
    XKeyboard(XKeyboard const&) = delete;
    XKeyboard& operator=(XKeyboard const&) = delete;

    bool isConnected() const { return m_connection != nullptr; }
    xkb_context* context() const { return m_context; }
    xkb_keymap* keymap() const { return m_keymap; }   ///< never null but where no map could be made at all
    std::uint32_t layout() const { return m_layout; } ///< index within the map

    /// The bits that modifiers have in the state of X events; 0 where no key of the keyboard sets one.
    struct ModifierBits {
        std::uint16_t alt = 0;
        std::uint16_t super = 0;
        std::uint16_t numLock = 0;
        std::uint16_t scrollLock = 0;
        bool operator==(ModifierBits const&) const = default;
    };
    ModifierBits modifierBits() const { return m_bits; }

    /// A key held down together with modifiers, whichever of the locks are on.
    struct Combination {
        std::uint8_t keycode = 0;
        std::uint16_t modifiers = 0;
        std::uint16_t locks = 0;
        auto operator<=>(Combination const&) const = default;
    };
    Combination combination(std::uint8_t keycode, std::uint16_t modifiers) const;
    /// Holds the combination for us. The error is the X protocol's number: 10 where another program has it
    /// already.
    std::optional<int> grab(Combination const& combination);
    void ungrab(Combination const& combination);

    /// A property of the root window as bytes; nothing where it is absent or there is no X server.
    std::optional<std::string> rootText(std::string_view property);

    struct KeyEvent {
        bool isPress = false;
        std::uint8_t keycode = 0;
        std::uint16_t state = 0;
    };
    Observers<KeyEvent const&> keyEvents; ///< of held keys; a repeat is a press without a release before it
    Observers<> mapChanged;
    Observers<> layoutChanged; ///< also after the map has changed

private:
    bool connect();
    void selectEvents();
    void readMap();
    void readEvents();
    void readEventsSoon();
    void hear(xcb_generic_event_t const& event);

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_NONE;
    std::uint8_t m_xkbEvent = 0;
    std::int32_t m_device = -1;
    xkb_context* m_context = nullptr;
    xkb_keymap* m_keymap = nullptr;
    std::uint32_t m_layout = 0;
    ModifierBits m_bits;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_readMapSoon;
};

} // namespace taliro
