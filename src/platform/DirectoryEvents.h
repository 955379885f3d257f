#pragma once

#include "foundation/Url.h"

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace taliro {

/// Tells of changes to a folder's own entries: created, deleted, renamed, written, attributes.
class DirectoryEvents {
public:
    class Source {
    public:
        virtual ~Source() = default; ///< ends the watch
        /// The same for two watches of one folder, whatever its path; another for a folder in its place.
        virtual int identity() const = 0;
    };
    /// Names of the items that changed; nothing where all may have, as when events were lost.
    using Changed = std::optional<std::vector<std::string>>;
    virtual ~DirectoryEvents() = default;

    /// `onEvent` is called on the main thread, once an event or burst of events, also when the folder itself
    /// goes or events were lost. Fails where the folder can't be watched.
    virtual std::expected<std::unique_ptr<Source>, std::errc>
    watch(Url const& folder, std::function<void(Changed const&)> onEvent) = 0;
    /// Tells at once of what happened until now, rather than in a later turn.
    virtual void deliverPending() = 0;
};

} // namespace taliro
