#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "foundation/Subscription.h"

namespace taliro {

/// Points with the origin at the top left of the primary screen, y growing downward.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(Point const&) const = default;
};
struct Size {
    double width = 0;
    double height = 0;
    bool operator==(Size const&) const = default;
};
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    double midX() const { return x + width / 2; }
    double midY() const { return y + height / 2; }
    bool contains(Point point) const {
        return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
    }
    bool operator==(Rect const&) const = default;
};

struct ScreenInfo {
    Rect frame;
    Rect visibleFrame; ///< without panels and docks
    bool isMain = false;
    double scale = 1; ///< pixels a point
};

class Screens {
public:
    virtual ~Screens() = default;
    virtual std::vector<ScreenInfo> all() = 0; ///< empty where there is none
    virtual Point mouseLocation() = 0;
    /// A screen came, went, became the main one, or changed its size.
    [[nodiscard]] virtual Subscription observeChanges(std::function<void()> observer) = 0;
};

} // namespace taliro
