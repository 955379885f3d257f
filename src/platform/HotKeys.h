#pragma once

#include "foundation/Published.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace taliro {

/// Key combinations that work whichever program has the keyboard. Key codes name physical keys by their
/// US-ANSI position, modifiers are bits of `carbonMask`.
class HotKeys {
public:
    class Registration {
    public:
        virtual ~Registration() = default; ///< gives the combination back
    };
    enum class Phase { pressed, released };
    /// Held down, a hot key is pressed once. Returns whether `id` was known.
    using Handler = std::function<bool(std::uint32_t id, Phase phase)>;

    struct RawKey {
        enum class Phase { down, repeat, up };
        Phase phase = Phase::down;
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
    };
    /// Returns whether the event was handled; it then goes no further.
    using RawKeyHandler = std::function<bool(RawKey const&)>;

    virtual ~HotKeys() = default;

    /// `id` is what the handler is called with. Fails with the system's own status number, for instance where
    /// another program holds the combination or the keyboard has no such key.
    virtual std::expected<std::unique_ptr<Registration>, int>
    registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, std::uint32_t id) = 0;
    virtual void setHandler(Handler handler) = 0;
    /// Gets the keys pressed while a menu of ours has the keyboard, before the menu does; nothing ends that.
    virtual void setRawKeyHandler(RawKeyHandler handler) = 0;
    /// Whether the system forbids combinations whose only modifiers are option, or option and shift.
    virtual bool forbidsOptionAlone() const { return false; }

    /// Tells the user why hot keys don't work on this desktop; empty where they do.
    Published<std::string> notice;
};

} // namespace taliro
