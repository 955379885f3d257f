#pragma once

#include "browsing/Listing.h"

#include <chrono>
#include <optional>
#include <string>

namespace taliro {

/// Moving through rows by keyboard.
namespace ArrowKeyNav {

/// The row `delta` rows from `current`, held within the list. With nothing or something unlisted selected:
/// the first row going down, the last going up. Nothing where there are no rows.
std::optional<Url> step(RowList const& rows, std::optional<Url> const& current, int delta);

} // namespace ArrowKeyNav

/// Finds rows by the first letters of their names as they are typed. A pause starts over.
class TypeAhead {
public:
    static constexpr std::chrono::milliseconds pause{1000};

    /// The row to select after `text` was typed at `now`; nothing where no name begins so. The same letter
    /// again goes on to the next name that begins with it.
    std::optional<Url> type(std::string const& text, std::chrono::milliseconds now, RowList const& rows,
                            std::optional<Url> const& current);

private:
    std::string m_typed; ///< lowercased
    std::chrono::milliseconds m_last{};
};

} // namespace taliro
