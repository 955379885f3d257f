#pragma once

namespace taliro {

/// Tells the end of a drag of ours whether it was dropped on ourselves. Armed by every drop that the
/// application's own targets take, consumed by the end of the drag that caused it.
struct InAppDropLatch {
    static inline bool armed = false;
};

} // namespace taliro
