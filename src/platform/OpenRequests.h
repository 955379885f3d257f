#pragma once

#include "foundation/Url.h"

#include <functional>
#include <vector>

namespace taliro {

/// Requests of other programs and of second starts: open these, or come to the front.
class OpenRequests {
public:
    virtual ~OpenRequests() = default;
    /// `open` is called on the main thread with the requested places, `activate` where there are none. What
    /// came before is delivered in the next turn.
    virtual void start(std::function<void(std::vector<Url>)> open, std::function<void()> activate) = 0;
};

} // namespace taliro
