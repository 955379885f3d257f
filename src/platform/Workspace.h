#pragma once

#include "foundation/Url.h"

#include <string>
#include <vector>

namespace taliro {

/// Other programs: opening with them, showing in them. Every call returns at once; a failure that the user
/// must know of is told by an alert.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// With the default application of the item's type; false where there is none or it did not start.
    virtual bool open(Url const& item) = 0;
    /// Shows the items selected in the desktop's file manager.
    virtual void reveal(std::vector<Url> const& items) = 0;
    /// A terminal in `folder`; false where none is installed.
    virtual bool openTerminal(Url const& folder) = 0;
    /// The desktop's settings on file access, where it has such a page; false where not.
    virtual bool openPrivacySettings() = 0;
};

} // namespace taliro
