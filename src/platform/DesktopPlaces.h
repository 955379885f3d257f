#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

struct DesktopPlace {
    std::optional<std::string> label; ///< as the user called it
    Url url;
    bool operator==(DesktopPlace const&) const = default;
};

/// The places that the user keeps in the sidebar of the desktop's own file manager.
class DesktopPlaces {
public:
    virtual ~DesktopPlaces() = default;
    /// In their order, files and other machines included; nothing where no such list can be read.
    virtual std::optional<std::vector<DesktopPlace>> read() = 0;
    [[nodiscard]] virtual Subscription observeChanges(std::function<void()> observer) = 0;
};

} // namespace taliro
