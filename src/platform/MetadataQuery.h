#pragma once

#include "foundation/Text.h"
#include "foundation/Url.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

/// What the index knows of one file.
struct MetadataItem {
    std::string path;
    std::optional<Date> lastUsed; ///< when the user opened it last, as far as any program told
    Date contentChanged;
    bool operator==(MetadataItem const&) const = default;
};

/// A live query over the files below the user's home folder: those used last first, then those changed last.
class MetadataQuery {
public:
    struct Definition {
        Date changedSince;         ///< what was changed before that does not match
        std::vector<Url> leaveOut; ///< folders in which the caller has no interest
    };
    virtual ~MetadataQuery() = default;

    /// Begins to gather, once. `onResults` is called on the main thread when there are results and after each
    /// change of them.
    virtual void start(Definition definition, std::function<void()> onResults) = 0;
    /// Between the two, `results` stays as it is and `onResults` is not called.
    virtual void disableUpdates() = 0;
    virtual void enableUpdates() = 0;
    /// The first thousand or so in their order.
    virtual std::vector<MetadataItem> const& results() const = 0;
};

} // namespace taliro
