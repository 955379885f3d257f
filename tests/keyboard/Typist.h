#pragma once

#include "KeyboardShortcuts/Key.h"

#include <xcb/xcb.h>

#include <vector>

namespace taliro::testing {

/// Another program at the same X server: it types on the keyboard, and has a window of its own that may have
/// the keyboard.
class Typist {
public:
    Typist();
    ~Typist();

    // Evdev numbers plus eight: the keys' numbers in X.
    static constexpr std::uint8_t escape = 9, tab = 23, q = 24, t = 28, p = 33, leftControl = 37, a = 38,
                                  d = 40, leftShift = 50, leftAlt = 64, capsLock = 66, f5 = 71, numLock = 77,
                                  scrollLock = 78, up = 111, backspace = 22, deleteForward = 119,
                                  leftSuper = 133;

    void press(std::uint8_t key) { send(key, true); }
    void release(std::uint8_t key) { send(key, false); }
    /// Presses the keys in order and lets them go in the other; done when the call returns.
    void type(std::vector<std::uint8_t> const& keys);
    void click(int x, int y);

    void takeFocus();
    bool hasFocus();
    /// Keys pressed while the own window has the keyboard, since the last call.
    std::vector<std::uint8_t> received();
    /// Whether the key could be had.
    bool grab(std::uint8_t key, std::uint16_t modifiers);
    void ungrab(std::uint8_t key, std::uint16_t modifiers);
    /// Switches to another of the keyboard's layouts.
    void lockLayout(std::uint8_t layout);
    std::uint16_t lockedModifiers();
    /// Returns once the server has done everything asked before.
    void sync();

private:
    void send(std::uint8_t key, bool down);

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_window_t m_window;
};

} // namespace taliro::testing
