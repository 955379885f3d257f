#pragma once

#include "KeyboardShortcuts/Key.h"
#include "KeyboardShortcuts/ModifierFlags.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace taliro {

class KeyboardLayout;

/// What a shortcut can be made of.
struct KeyEvent {
    enum class Type { keyDown, keyUp, other };
    Type type = Type::keyDown;
    Key key{};
    ModifierFlags modifiers;
};

/// A physical key with the modifiers held: what is stored, registered and compared.
class Shortcut {
public:
    Shortcut(Key key, ModifierFlags modifiers);
    /// Bits of the mask that stand for no modifier are dropped.
    Shortcut(std::int64_t carbonKeyCode, std::int64_t carbonModifiers);
    /// Nothing unless a key went down or up. The function flag doesn't count: arrow keys carry it by
    /// themselves.
    static std::optional<Shortcut> fromEvent(KeyEvent const& event);

    std::int64_t carbonKeyCode() const { return m_carbonKeyCode; }
    std::int64_t carbonModifiers() const { return m_carbonModifiers; }
    Key key() const { return Key{m_carbonKeyCode}; }
    ModifierFlags modifiers() const { return ModifierFlags::fromCarbon(m_carbonModifiers); }

    /// Whether it leaves typing alone: control, option or command is held, or the key is F1 to F20.
    bool isApartFromTyping() const;

    /// "⌃⌥⌘P": modifier symbols, then the key's symbol or what it types in `layout`.
    std::string presentableDescription(KeyboardLayout& layout) const;

    bool operator==(Shortcut const&) const = default;

private:
    std::int64_t m_carbonKeyCode;
    std::int64_t m_carbonModifiers;
};

/// What `key` types in `layout`; nothing for special keys and those that type no single character.
std::optional<std::string> keyToCharacter(Key key, KeyboardLayout& layout);

/// `{"carbonKeyCode":35,"carbonModifiers":6400}`, the form in which shortcuts are stored.
std::string encode(Shortcut const& shortcut);
/// Nothing where the text is anything else.
std::optional<Shortcut> decodeShortcut(std::string const& json);

} // namespace taliro

template <>
struct std::hash<taliro::Shortcut> {
    std::size_t operator()(taliro::Shortcut const& shortcut) const noexcept {
        return std::hash<std::int64_t>{}(shortcut.carbonKeyCode() * 0x40003 + shortcut.carbonModifiers());
    }
};
