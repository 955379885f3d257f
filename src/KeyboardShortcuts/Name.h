#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <optional>
#include <string>

namespace taliro {

class KeyboardShortcuts;

/// A slot for one shortcut that the user may change. `KeyboardShortcuts::name` makes them.
class Name {
public:
    std::string const& rawValue() const { return m_rawValue; }
    std::optional<Shortcut> const& defaultShortcut() const { return m_default; }
    /// Where the shortcut is stored.
    std::string defaultsKey() const { return "KeyboardShortcuts_" + m_rawValue; }

    /// The text alone tells names apart.
    bool operator==(Name const& other) const { return m_rawValue == other.m_rawValue; }

private:
    friend class KeyboardShortcuts;
    Name(std::string rawValue, std::optional<Shortcut> defaultShortcut)
        : m_rawValue(std::move(rawValue)), m_default(defaultShortcut) {}

    std::string m_rawValue;
    std::optional<Shortcut> m_default;
};

} // namespace taliro

template <>
struct std::hash<taliro::Name> {
    std::size_t operator()(taliro::Name const& name) const noexcept {
        return std::hash<std::string>{}(name.rawValue());
    }
};
