#include "app/Placement.h"

#include <algorithm>
#include <limits>

namespace taliro::Placement {

namespace {

constexpr double edgeMargin = 8;
constexpr double cornerMargin = 12;
constexpr double itemGap = 6;
/// An item nearer than this to the bottom of the visible frame has no room for a window below it.
constexpr double roomBelowItem = 200;
/// The arrow keeps clear of the rounded corners.
constexpr double arrowInset = 10 + arrowWidth / 2;
constexpr double titleStripHeight = 31;
constexpr Rect noScreen{0, 0, 1440, 900};

Rect mainVisibleFrame(std::vector<ScreenInfo> const& screens) {
    auto const main = std::ranges::find_if(screens, &ScreenInfo::isMain);
    if (main != screens.end())
        return main->visibleFrame;
    return screens.empty() ? noScreen : screens.front().visibleFrame;
}

Rect visibleFrameAt(std::vector<ScreenInfo> const& screens, Point point) {
    auto const screen =
        std::ranges::find_if(screens, [&](ScreenInfo const& info) { return info.frame.contains(point); });
    return screen != screens.end() ? screen->visibleFrame : mainVisibleFrame(screens);
}

Rect visibleFrameOf(std::vector<ScreenInfo> const& screens, std::optional<Rect> const& item) {
    return item ? visibleFrameAt(screens, {item->midX(), item->midY()}) : mainVisibleFrame(screens);
}

/// Keeps a margin to every edge; a window too large for that keeps it at the top and at the right.
Point clamped(Point origin, Size size, Rect const& visible) {
    return {std::min(std::max(origin.x, visible.x + edgeMargin), visible.maxX() - size.width - edgeMargin),
            std::max(std::min(origin.y, visible.maxY() - size.height - edgeMargin), visible.y + edgeMargin)};
}

Point topRightCorner(Size size, Rect const& visible) {
    return {visible.maxX() - size.width - cornerMargin, visible.y + cornerMargin};
}

double overlap(double from, double to, double otherFrom, double otherTo) {
    return std::max(0.0, std::min(to, otherTo) - std::max(from, otherFrom));
}

/// Enough of the title strip to take hold of.
bool canReachTitle(Rect const& frame, Rect const& visible) {
    auto const wanted = std::min(80.0, frame.width);
    return overlap(frame.x, frame.maxX(), visible.x, visible.maxX()) >= wanted &&
           overlap(frame.y, frame.y + titleStripHeight, visible.y, visible.maxY()) >= titleStripHeight / 2;
}

double squaredDistance(Rect const& a, Rect const& b) {
    auto const x = a.midX() - b.midX();
    auto const y = a.midY() - b.midY();
    return x * x + y * y;
}

} // namespace

Size clampedSize(Size size) {
    return {std::min(std::max(size.width, minimumSize.width), maximumSize.width),
            std::min(std::max(size.height, minimumSize.height), maximumSize.height)};
}

Point originAtCursor(std::vector<ScreenInfo> const& screens, Point mouse, Size size) {
    return clamped({mouse.x - size.width / 2, mouse.y - size.height / 2}, size,
                   visibleFrameAt(screens, mouse));
}

Point panelOrigin(std::vector<ScreenInfo> const& screens, std::optional<Rect> item, Size size) {
    auto const visible = visibleFrameOf(screens, item);
    if (item && visible.maxY() - item->maxY() > roomBelowItem)
        return clamped({item->midX() - size.width / 2, item->maxY() + itemGap}, size, visible);
    return clamped(topRightCorner(size, visible), size, visible);
}

Hanging popoverFrame(std::vector<ScreenInfo> const& screens, std::optional<Rect> item, Size size) {
    auto const visible = visibleFrameOf(screens, item);
    size = {std::min(size.width, std::max(visible.width - 2 * edgeMargin, minimumSize.width)),
            std::min(size.height, std::max(visible.height - arrowHeight - edgeMargin, minimumSize.height))};
    if (!item) {
        auto const origin = clamped(topRightCorner(size, visible), size, visible);
        return {{origin.x, origin.y, size.width, size.height}};
    }
    Hanging hanging;
    auto const below = item->maxY() + arrowHeight;
    auto const above = item->y - arrowHeight - size.height;
    bool const fitsBelow = below + size.height <= visible.maxY();
    hanging.arrow = fitsBelow || above < visible.y ? Hanging::ArrowEdge::top : Hanging::ArrowEdge::bottom;
    auto const x = clamped({item->midX() - size.width / 2, 0}, size, visible).x;
    hanging.frame = {x, hanging.arrow == Hanging::ArrowEdge::top ? below : above, size.width, size.height};
    hanging.arrowX = arrowX(item->midX() - x, size.width);
    return hanging;
}

double arrowX(double wanted, double width) {
    return std::clamp(wanted, arrowInset, width - arrowInset);
}

Rect centered(std::vector<ScreenInfo> const& screens, Size size) {
    auto const visible = mainVisibleFrame(screens);
    auto const origin = clamped(
        {visible.midX() - size.width / 2, visible.y + (visible.height - size.height) * 0.4}, size, visible);
    return {origin.x, origin.y, size.width, size.height};
}

Rect reachable(std::vector<ScreenInfo> const& screens, Rect frame) {
    bool const fits = std::ranges::any_of(screens, [&](ScreenInfo const& screen) {
        return frame.width <= screen.visibleFrame.width && frame.height <= screen.visibleFrame.height;
    });
    Rect const* nearest = nullptr;
    double distance = std::numeric_limits<double>::infinity();
    for (auto const& screen : screens) {
        if (fits && canReachTitle(frame, screen.visibleFrame))
            return frame;
        auto const there = squaredDistance(frame, screen.visibleFrame);
        if (there < distance) {
            distance = there;
            nearest = &screen.visibleFrame;
        }
    }
    auto const visible = nearest ? *nearest : noScreen;
    frame.width = std::min(frame.width, std::max(visible.width - 2 * edgeMargin, minimumSize.width));
    frame.height = std::min(frame.height, std::max(visible.height - 2 * edgeMargin, minimumSize.height));
    auto const origin = clamped({frame.x, frame.y}, {frame.width, frame.height}, visible);
    return {origin.x, origin.y, frame.width, frame.height};
}

} // namespace taliro::Placement
