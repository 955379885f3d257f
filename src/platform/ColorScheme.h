#pragma once

#include "foundation/Subscription.h"

#include <functional>

namespace taliro {

/// Whether the desktop asks for light or dark windows.
class ColorScheme {
public:
    virtual ~ColorScheme() = default;

    /// The latest that is known; never waits.
    virtual bool isDark() const = 0;
    /// Called on the main thread with the new answer whenever it changes.
    [[nodiscard]] virtual Subscription observe(std::function<void(bool dark)> observer) = 0;
};

} // namespace taliro
