#include "KeyboardShortcuts/Key.h"

#include "KeyboardShortcuts/Texts.h"

#include <array>

namespace taliro {

namespace {

struct SpecialKey {
    Key key;
    std::string_view text;
};

constexpr std::array specialKeys{
    SpecialKey{Key::return_, "\u21A9"},
    SpecialKey{Key::delete_, "\u232B"},
    SpecialKey{Key::deleteForward, "\u2326"},
    SpecialKey{Key::end, "\u2198"},
    SpecialKey{Key::escape, "\u238B"},
    SpecialKey{Key::help, "?\u20DD"},
    SpecialKey{Key::home, "\u2196"},
    SpecialKey{Key::space, texts::spaceKey},
    SpecialKey{Key::tab, "\u21E5"},
    SpecialKey{Key::pageUp, "\u21DE"},
    SpecialKey{Key::pageDown, "\u21DF"},
    SpecialKey{Key::upArrow, "\u2191"},
    SpecialKey{Key::rightArrow, "\u2192"},
    SpecialKey{Key::downArrow, "\u2193"},
    SpecialKey{Key::leftArrow, "\u2190"},
    SpecialKey{Key::f1, "F1"},
    SpecialKey{Key::f2, "F2"},
    SpecialKey{Key::f3, "F3"},
    SpecialKey{Key::f4, "F4"},
    SpecialKey{Key::f5, "F5"},
    SpecialKey{Key::f6, "F6"},
    SpecialKey{Key::f7, "F7"},
    SpecialKey{Key::f8, "F8"},
    SpecialKey{Key::f9, "F9"},
    SpecialKey{Key::f10, "F10"},
    SpecialKey{Key::f11, "F11"},
    SpecialKey{Key::f12, "F12"},
    SpecialKey{Key::f13, "F13"},
    SpecialKey{Key::f14, "F14"},
    SpecialKey{Key::f15, "F15"},
    SpecialKey{Key::f16, "F16"},
    SpecialKey{Key::f17, "F17"},
    SpecialKey{Key::f18, "F18"},
    SpecialKey{Key::f19, "F19"},
    SpecialKey{Key::f20, "F20"},
    SpecialKey{Key::keypad0, "0\u20E3"},
    SpecialKey{Key::keypad1, "1\u20E3"},
    SpecialKey{Key::keypad2, "2\u20E3"},
    SpecialKey{Key::keypad3, "3\u20E3"},
    SpecialKey{Key::keypad4, "4\u20E3"},
    SpecialKey{Key::keypad5, "5\u20E3"},
    SpecialKey{Key::keypad6, "6\u20E3"},
    SpecialKey{Key::keypad7, "7\u20E3"},
    SpecialKey{Key::keypad8, "8\u20E3"},
    SpecialKey{Key::keypad9, "9\u20E3"},
    SpecialKey{Key::keypadClear, "\u2612\u20E3"},
    SpecialKey{Key::keypadDecimal, ".\u20E3"},
    SpecialKey{Key::keypadDivide, "/\u20E3"},
    SpecialKey{Key::keypadEnter, "\u21A9\u20E3"},
    SpecialKey{Key::keypadEquals, "=\u20E3"},
    SpecialKey{Key::keypadMinus, "-\u20E3"},
    SpecialKey{Key::keypadMultiply, "*\u20E3"},
    SpecialKey{Key::keypadPlus, "+\u20E3"},
};
static_assert(specialKeys.size() == 53);

} // namespace

std::string_view specialKeyText(Key key) {
    for (auto const& special : specialKeys)
        if (special.key == key)
            return special.text;
    return {};
}

bool isFunctionKey(Key key) {
    auto const text = specialKeyText(key);
    return text.size() >= 2 && text[0] == 'F';
}

bool isModifierKey(Key key) {
    return key >= Key::rightCommand && key <= Key::function;
}

} // namespace taliro
