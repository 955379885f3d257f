#pragma once

#include "foundation/Url.h"
#include "platform/PropertyValue.h"

#include <optional>

namespace taliro {

/// Durable references to files and folders, kept as opaque bytes.
class Bookmarks {
public:
    using Data = PropertyValue::Data;

    virtual ~Bookmarks() = default;
    /// Nothing where `item` isn't there.
    virtual std::optional<Data> make(Url const& item) = 0;
    /// Where the item is now, also after it got another name within its folder. Nothing where it is gone or
    /// the bytes, which may be any, are no bookmark. Never asks the user and never mounts.
    virtual std::optional<Url> resolve(Data const& bookmark) = 0;
};

} // namespace taliro
