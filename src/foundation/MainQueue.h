#pragma once

#include "foundation/WorkItem.h"

#include <chrono>
#include <functional>

namespace taliro {

/// The main thread's queue. In the program it is the event loop, in tests a clock turned by hand.
class MainQueue {
public:
    virtual ~MainQueue() = default;

    /// Runs `task` on the main thread in a later turn, in the order of the calls. Callable from any thread.
    virtual void async(std::function<void()> task) = 0;
    /// Runs `task` once `delay` has passed, unless the returned item is destroyed before. Main thread only.
    [[nodiscard]] virtual WorkItem after(std::chrono::milliseconds delay, std::function<void()> task) = 0;
    /// A steady clock: what `after` counts by.
    virtual std::chrono::milliseconds now() const = 0;
};

} // namespace taliro
