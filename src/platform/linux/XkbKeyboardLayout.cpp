#include "platform/linux/XkbKeyboardLayout.h"

#include "platform/linux/PhysicalKeys.h"

#include <array>
#include <bitset>
#include <xkbcommon/xkbcommon.h>

namespace taliro {

namespace {

/// What a key has in a layout at a level: 0 without modifiers, 1 with Shift.
xkb_keysym_t symbol(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t layout,
                    xkb_level_index_t level) {
    // A key may have fewer layouts than the keyboard; they then come round again.
    auto const layouts = xkb_keymap_num_layouts_for_key(keymap, key);
    xkb_keysym_t const* symbols = nullptr;
    if (layouts == 0 || xkb_keymap_key_get_syms_by_level(keymap, key, layout % layouts, level, &symbols) != 1)
        return XKB_KEY_NoSymbol;
    return symbols[0];
}

bool typesAsciiLetters(xkb_keymap* keymap, xkb_layout_index_t layout) {
    std::bitset<26> letters;
    for (auto key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap); ++key) {
        auto const typed = symbol(keymap, key, layout, 0);
        if (typed >= XKB_KEY_a && typed <= XKB_KEY_z)
            letters.set(typed - XKB_KEY_a);
    }
    return letters.all();
}

/// A dead key is shown by the accent that it adds.
struct DeadKey {
    xkb_keysym_t keysym;
    char32_t accent;
};
constexpr std::array deadKeys{
    DeadKey{XKB_KEY_dead_grave, U'`'},       DeadKey{XKB_KEY_dead_acute, U'´'},
    DeadKey{XKB_KEY_dead_circumflex, U'^'},  DeadKey{XKB_KEY_dead_tilde, U'~'},
    DeadKey{XKB_KEY_dead_diaeresis, U'¨'},   DeadKey{XKB_KEY_dead_cedilla, U'¸'},
    DeadKey{XKB_KEY_dead_abovering, U'˚'},   DeadKey{XKB_KEY_dead_macron, U'¯'},
    DeadKey{XKB_KEY_dead_breve, U'˘'},       DeadKey{XKB_KEY_dead_abovedot, U'˙'},
    DeadKey{XKB_KEY_dead_ogonek, U'˛'},      DeadKey{XKB_KEY_dead_caron, U'ˇ'},
    DeadKey{XKB_KEY_dead_doubleacute, U'˝'}, DeadKey{XKB_KEY_dead_stroke, U'/'},
    DeadKey{XKB_KEY_dead_iota, U'ͺ'},
};

char32_t characterOf(xkb_keysym_t keysym) {
    for (auto const& dead : deadKeys)
        if (dead.keysym == keysym)
            return dead.accent;
    return xkb_keysym_to_utf32(keysym);
}

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

} // namespace

XkbKeyboardLayout::XkbKeyboardLayout(XKeyboard& keyboard) : m_keyboard(keyboard) {}

XkbKeyboardLayout::~XkbKeyboardLayout() {
    xkb_keymap_unref(m_us);
}

XkbKeyboardLayout::Layout XkbKeyboardLayout::asciiCapable() {
    auto* keymap = m_keyboard.keymap();
    auto const layouts = keymap ? xkb_keymap_num_layouts(keymap) : 0;
    for (xkb_layout_index_t step = 0; step < layouts; ++step) {
        auto const layout = (m_keyboard.layout() + step) % layouts;
        if (typesAsciiLetters(keymap, layout))
            return {keymap, layout};
    }
    return {usKeymap(), 0};
}

xkb_keymap* XkbKeyboardLayout::usKeymap() {
    if (!m_us) {
        xkb_rule_names names{};
        names.layout = "us";
        m_us = xkb_keymap_new_from_names(m_keyboard.context(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    }
    return m_us;
}

std::optional<std::string> XkbKeyboardLayout::character(std::int64_t keyCode) {
    auto const [keymap, layout] = asciiCapable();
    auto const key = nativeScanCode(keymap, keyCode);
    if (!key)
        return std::nullopt;
    auto const typed = characterOf(symbol(keymap, *key, layout, 0));
    if (isControl(typed))
        return std::nullopt;
    return QString::fromUcs4(&typed, 1).toStdString();
}

std::optional<std::int64_t> XkbKeyboardLayout::keyCode(std::uint32_t nativeScanCode) {
    return physicalKeyCode(m_keyboard.keymap(), nativeScanCode);
}

Subscription XkbKeyboardLayout::observeChanges(std::function<void()> observer) {
    return m_keyboard.layoutChanged.add(std::move(observer));
}

std::optional<std::int64_t> XkbKeyboardLayout::keyCodeTyping(std::string const& keysymName) {
    auto const wanted = xkb_keysym_from_name(keysymName.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    auto const [keymap, layout] = asciiCapable();
    if (wanted == XKB_KEY_NoSymbol || !keymap)
        return std::nullopt;
    for (xkb_level_index_t level : {0, 1})
        for (auto const& physical : physicalKeys()) {
            auto const key = xkb_keymap_key_by_name(keymap, physical.xkbName);
            if (key != XKB_KEYCODE_INVALID && symbol(keymap, key, layout, level) == wanted)
                return physical.keyCode;
        }
    return std::nullopt;
}

std::optional<std::string> XkbKeyboardLayout::keysymName(std::int64_t keyCode) {
    auto const [keymap, layout] = asciiCapable();
    auto const key = nativeScanCode(keymap, keyCode);
    auto const typed = key ? symbol(keymap, *key, layout, 0) : XKB_KEY_NoSymbol;
    std::array<char, 64> name{};
    if (typed == XKB_KEY_NoSymbol || xkb_keysym_get_name(typed, name.data(), name.size()) <= 0)
        return std::nullopt;
    return name.data();
}

} // namespace taliro
