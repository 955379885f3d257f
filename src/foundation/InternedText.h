#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>

namespace taliro {

/// A text that is kept once, for as long as the program runs, however often it occurs: copied and compared
/// like a pointer. For texts of which there are few. Made on any thread.
class InternedText {
public:
    template <std::convertible_to<std::string_view> Text>
    InternedText(Text const& text) : m_text(kept(text)) {}

    std::string const& text() const { return *m_text; }
    operator std::string_view() const { return *m_text; }

    bool operator==(InternedText const&) const = default;

private:
    static std::string const* kept(std::string_view text);

    std::string const* m_text;
};

} // namespace taliro

template <>
struct std::hash<taliro::InternedText> {
    std::size_t operator()(taliro::InternedText const& text) const noexcept {
        return std::hash<std::string const*>{}(&text.text());
    }
};
