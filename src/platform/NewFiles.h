#pragma once

#include "foundation/Url.h"

#include <expected>
#include <string_view>
#include <system_error>

namespace taliro {

/// Puts new files under their names. A file appears whole and safe on disk or not at all, and what is there
/// already is never replaced: `file_exists` then.
class NewFiles {
public:
    using Result = std::expected<void, std::errc>;

    virtual ~NewFiles() = default;
    virtual Result write(Url const& destination, std::string_view bytes) = 0;
    /// Gives a complete file its final name in the same folder.
    virtual Result keep(Url const& temporary, Url const& destination) = 0;
    /// Removes a file that was not kept; does nothing where it is gone.
    virtual void discard(Url const& temporary) = 0;
};

} // namespace taliro
