#include "browsing/ArrowKeyNav.h"

#include "foundation/Text.h"

#include <algorithm>

namespace taliro {

std::optional<Url> ArrowKeyNav::step(RowList const& rows, std::optional<Url> const& current, int delta) {
    if (rows.empty())
        return std::nullopt;
    auto const last = static_cast<std::ptrdiff_t>(rows.size()) - 1;
    auto const at = current ? rows.indexOf(*current) : std::nullopt;
    if (!at)
        return rows[static_cast<std::size_t>(delta < 0 ? last : 0)].url;
    auto const target = std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(*at) + delta, 0, last);
    return rows[static_cast<std::size_t>(target)].url;
}

std::optional<Url> TypeAhead::type(std::string const& text, std::chrono::milliseconds now,
                                   RowList const& rows, std::optional<Url> const& current) {
    auto const letters = lowercased(text);
    bool const goesOn = !m_typed.empty() && now - m_last < pause;
    bool const repeats = goesOn && m_typed == letters;
    if (!goesOn)
        m_typed.clear();
    if (!repeats)
        m_typed += letters;
    m_last = now;

    auto const at = current ? rows.indexOf(*current) : std::nullopt;
    // A longer beginning may still fit the row it found so far; a new one or a repeated letter looks further
    // on.
    auto const start = !at ? 0 : *at + (repeats || !goesOn ? 1 : 0);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto const& entry = rows[(start + i) % rows.size()];
        if (lowercased(entry.nameView()).starts_with(m_typed))
            return entry.url;
    }
    return std::nullopt;
}

} // namespace taliro
