#pragma once

#include "platform/Screens.h"

#include <optional>
#include <vector>

namespace taliro {

/// Where the browser's windows go. A window never leaves the screen's visible frame by its top edge, so that
/// it can always be taken hold of.
namespace Placement {

inline constexpr Size minimumSize{280, 300};
inline constexpr Size maximumSize{1400, 1000};
inline constexpr Size initialSize{720, 460};

/// Raised to the minimum, then lowered to the maximum.
Size clampedSize(Size size);

/// The top left of a window of `size` with the pointer in its middle.
Point originAtCursor(std::vector<ScreenInfo> const& screens, Point mouse, Size size);

/// The top left of a window of `size` under the status item; in the screen's top right corner where the
/// item's place isn't known or is too low for a window to hang from.
Point panelOrigin(std::vector<ScreenInfo> const& screens, std::optional<Rect> item, Size size);

/// A window hanging from the status item by an arrow.
struct Hanging {
    enum class ArrowEdge { none, top, bottom };
    Rect frame; ///< without the arrow
    ArrowEdge arrow = ArrowEdge::none;
    double arrowX = 0; ///< the tip, from the frame's left edge
    bool operator==(Hanging const&) const = default;
};
inline constexpr double arrowHeight = 10;
inline constexpr double arrowWidth = 22;

/// Below the item, above it where only there is room, and without an arrow in the screen's top right corner
/// where the item's place isn't known.
Hanging popoverFrame(std::vector<ScreenInfo> const& screens, std::optional<Rect> item, Size size);
/// `wanted`, but clear of the corners of a frame that is `width` wide.
double arrowX(double wanted, double width);

/// In the middle of the main screen, a little high.
Rect centered(std::vector<ScreenInfo> const& screens, Size size);

/// `frame` where its title strip can be reached and some screen is large enough for it; else moved onto the
/// nearest screen, and no larger than that.
Rect reachable(std::vector<ScreenInfo> const& screens, Rect frame);

} // namespace Placement

} // namespace taliro
