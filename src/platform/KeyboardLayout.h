#pragma once

#include "foundation/Subscription.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace taliro {

/// What the keys of the user's keyboard type. Key codes name physical keys by their US-ANSI position.
class KeyboardLayout {
public:
    virtual ~KeyboardLayout() = default;
    /// What the key types without modifiers in the current layout that can type ASCII: one character as the
    /// user sees it, or nothing.
    virtual std::optional<std::string> character(std::int64_t keyCode) = 0;
    /// The physical key behind the native scan code of a key event.
    virtual std::optional<std::int64_t> keyCode(std::uint32_t nativeScanCode) = 0;
    /// The user switched the layout, or the keyboard's map changed.
    [[nodiscard]] virtual Subscription observeChanges(std::function<void()> observer) = 0;
};

} // namespace taliro
