#pragma once

#include "foundation/Url.h"

#include <optional>
#include <string>

namespace taliro {

enum class StandardFolder { desktop, documents, downloads, movies, music, pictures, publicShare, trash };

/// Where the user's well-known folders are, and what folders are called.
class StandardFolders {
public:
    virtual ~StandardFolders() = default;
    /// Nothing where the user has no such folder set up. What is told need not exist.
    virtual std::optional<Url> url(StandardFolder folder) = 0;
    bool isTrash(Url const& folder) {
        auto const trash = url(StandardFolder::trash);
        return trash && trash->standardized() == folder.standardized();
    }
    /// The name that `folder` gives itself in the user's language; nothing where it gives none.
    virtual std::optional<std::string> localizedName(Url const& folder) = 0;
};

} // namespace taliro
