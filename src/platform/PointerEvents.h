#pragma once

#include "foundation/Subscription.h"
#include "platform/Screens.h"

#include <functional>

namespace taliro {

/// Mouse events that no window of ours gets.
class PointerEvents {
public:
    virtual ~PointerEvents() = default;
    /// The left button went down in another program's window, with the pointer there. Heard in a later turn.
    /// Silent where the desktop keeps other programs' events to itself.
    [[nodiscard]] virtual Subscription observeGlobalMouseDown(std::function<void(Point)> observer) = 0;
};

} // namespace taliro
