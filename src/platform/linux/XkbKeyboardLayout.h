#pragma once

#include "platform/KeyboardLayout.h"
#include "platform/linux/XKeyboard.h"

#include <string>

namespace taliro {

/// The layouts of the keyboard's map. Where the one in use types no ASCII letters, as a Russian one, the next
/// of the user's that does stands in, or the US layout.
class XkbKeyboardLayout : public KeyboardLayout {
public:
    explicit XkbKeyboardLayout(XKeyboard& keyboard);
    ~XkbKeyboardLayout() override;

    std::optional<std::string> character(std::int64_t keyCode) override;
    std::optional<std::int64_t> keyCode(std::uint32_t nativeScanCode) override;
    Subscription observeChanges(std::function<void()> observer) override;

    /// The key that has this X key name ("Delete", "XF86AudioMute", "d") with or without Shift.
    std::optional<std::int64_t> keyCodeTyping(std::string const& keysymName);
    /// The X key name of what the key types without modifiers.
    std::optional<std::string> keysymName(std::int64_t keyCode);

private:
    struct Layout {
        xkb_keymap* keymap = nullptr;
        std::uint32_t index = 0;
    };
    Layout asciiCapable();
    xkb_keymap* usKeymap();

    XKeyboard& m_keyboard;
    xkb_keymap* m_us = nullptr; ///< made when first needed
};

} // namespace taliro
