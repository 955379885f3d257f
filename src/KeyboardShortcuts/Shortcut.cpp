#include "KeyboardShortcuts/Shortcut.h"

#include "foundation/Text.h"
#include "platform/KeyboardLayout.h"

#include <utility>

namespace taliro {

Shortcut::Shortcut(Key key, ModifierFlags modifiers)
    : m_carbonKeyCode(std::to_underlying(key)), m_carbonModifiers(modifiers.carbon()) {}

Shortcut::Shortcut(std::int64_t carbonKeyCode, std::int64_t carbonModifiers)
    : m_carbonKeyCode(carbonKeyCode), m_carbonModifiers(normalizedCarbonModifiers(carbonModifiers)) {}

std::optional<Shortcut> Shortcut::fromEvent(KeyEvent const& event) {
    if (event.type == KeyEvent::Type::other)
        return std::nullopt;
    return Shortcut(event.key, event.modifiers.without(ModifierFlags::function));
}

bool Shortcut::isApartFromTyping() const {
    return (m_carbonModifiers & (carbonMask::control | carbonMask::option | carbonMask::command)) != 0 ||
           isFunctionKey(key());
}

std::string Shortcut::presentableDescription(KeyboardLayout& layout) const {
    auto const symbols = modifiers().ks_symbolicRepresentation();
    if (auto const text = specialKeyText(key()); !text.empty())
        return symbols + std::string(text);
    auto const character = keyToCharacter(key(), layout);
    return symbols + (character ? capitalized(*character) : "\uFFFD");
}

std::optional<std::string> keyToCharacter(Key key, KeyboardLayout& layout) {
    auto const code = std::to_underlying(key);
    if (isSpecialKey(key) || code < 0 || code > 0xFFFF)
        return std::nullopt;
    auto character = layout.character(code);
    if (!character || characters(*character).size() != 1)
        return std::nullopt;
    return character;
}

} // namespace taliro
