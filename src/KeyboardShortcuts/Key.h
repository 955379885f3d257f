#pragma once

#include <cstdint>
#include <string_view>

namespace taliro {

/// A physical key: the virtual key code of its US-ANSI position, whatever the layout types there.
/// Any integer can be one; those named here are on common keyboards.
enum class Key : std::int64_t {
    a = 0,
    s = 1,
    d = 2,
    f = 3,
    h = 4,
    g = 5,
    z = 6,
    x = 7,
    c = 8,
    v = 9,
    b = 11,
    q = 12,
    w = 13,
    e = 14,
    r = 15,
    y = 16,
    t = 17,
    o = 31,
    u = 32,
    i = 34,
    p = 35,
    l = 37,
    j = 38,
    k = 40,
    n = 45,
    m = 46,

    one = 18,
    two = 19,
    three = 20,
    four = 21,
    six = 22,
    five = 23,
    nine = 25,
    seven = 26,
    eight = 28,
    zero = 29,

    rightCommand = 54,
    command = 55,
    shift = 56,
    capsLock = 57,
    option = 58,
    control = 59,
    rightShift = 60,
    rightOption = 61,
    rightControl = 62,
    function = 63,

    equal = 24,
    minus = 27,
    rightBracket = 30,
    leftBracket = 33,
    return_ = 36,
    quote = 39,
    semicolon = 41,
    backslash = 42,
    comma = 43,
    slash = 44,
    period = 47,
    tab = 48,
    space = 49,
    backtick = 50,

    delete_ = 51,
    escape = 53,
    help = 114,
    home = 115,
    pageUp = 116,
    deleteForward = 117,
    end = 119,
    pageDown = 121,
    leftArrow = 123,
    rightArrow = 124,
    downArrow = 125,
    upArrow = 126,

    volumeUp = 72,
    volumeDown = 73,
    mute = 74,

    f17 = 64,
    f18 = 79,
    f19 = 80,
    f20 = 90,
    f5 = 96,
    f6 = 97,
    f7 = 98,
    f3 = 99,
    f8 = 100,
    f9 = 101,
    f11 = 103,
    f13 = 105,
    f16 = 106,
    f14 = 107,
    f10 = 109,
    f12 = 111,
    f15 = 113,
    f4 = 118,
    f2 = 120,
    f1 = 122,

    keypadDecimal = 65,
    keypadMultiply = 67,
    keypadPlus = 69,
    keypadClear = 71,
    keypadDivide = 75,
    keypadEnter = 76,
    keypadMinus = 78,
    keypadEquals = 81,
    keypad0 = 82,
    keypad1 = 83,
    keypad2 = 84,
    keypad3 = 85,
    keypad4 = 86,
    keypad5 = 87,
    keypad6 = 88,
    keypad7 = 89,
    keypad8 = 91,
    keypad9 = 92,
};

/// The symbol or fixed text that stands for a key which isn't shown by what it types; empty for other keys.
std::string_view specialKeyText(Key key);
inline bool isSpecialKey(Key key) {
    return !specialKeyText(key).empty();
}
bool isFunctionKey(Key key); ///< F1 to F20
bool isModifierKey(Key key); ///< types nothing and only changes what other keys do

} // namespace taliro
