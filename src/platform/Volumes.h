#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

/// A mounted file system. What could not be determined is absent.
struct Volume {
    Url mountPoint;
    std::optional<std::string> name = std::nullopt;
    std::optional<bool> isLocal = std::nullopt;
    std::optional<bool> isRemovable = std::nullopt;
    std::optional<bool> isInternal = std::nullopt;
    std::optional<bool> isBrowsable = std::nullopt; ///< meant for the user's eyes
    bool operator==(Volume const&) const = default;
};

class Volumes {
public:
    using Ejected = std::function<void(std::expected<void, std::string>)>;

    virtual ~Volumes() = default;
    /// In the order they were mounted; the kernel's own file systems left out.
    virtual std::vector<Volume> mounted() = 0;
    /// A volume was mounted or unmounted, or more became known of one.
    [[nodiscard]] virtual Subscription observeChanges(std::function<void()> observer) = 0;
    /// Unmounts and ejects. `done` is called on the main thread; a failure is told in the user's words.
    virtual void eject(Url const& mountPoint, Ejected done) = 0;
};

} // namespace taliro
