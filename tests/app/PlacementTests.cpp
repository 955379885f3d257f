#include "app/Placement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace taliro {

void PrintTo(Point const& point, std::ostream* stream) {
    *stream << '(' << point.x << ", " << point.y << ')';
}
void PrintTo(Rect const& rect, std::ostream* stream) {
    *stream << rect.width << 'x' << rect.height << " at (" << rect.x << ", " << rect.y << ')';
}

namespace {

using Screens = std::vector<ScreenInfo>;
using ArrowEdge = Placement::Hanging::ArrowEdge;

constexpr Size usual{720, 460};
Screens const one{{{0, 0, 1440, 900}, {0, 30, 1440, 870}, true}};
/// The main screen in the middle, a smaller one to the left and below the origin, a tall one to the right.
Screens const three{{{0, 0, 1440, 900}, {0, 30, 1440, 870}, true},
                    {{-1024, 200, 1024, 768}, {-1024, 200, 1024, 768}, false},
                    {{1440, -500, 1200, 1920}, {1440, -500, 1200, 1880}, false}};

TEST(Placement, AtTheCursorStaysEightPointsInside) {
    struct {
        char const* what;
        Screens screens;
        Point mouse;
        Size size;
        Point origin;
    } const cases[]{
        {"in the middle", one, {720, 450}, usual, {360, 220}},
        {"top left", one, {0, 0}, usual, {8, 38}},
        {"top right", one, {1439, 0}, usual, {712, 38}},
        {"bottom left", one, {0, 899}, usual, {8, 432}},
        {"bottom right", one, {1439, 899}, usual, {712, 432}},
        {"too large: the top and the right edge win", one, {700, 450}, {1500, 1000}, {-68, 38}},
        {"left screen", three, {-1000, 210}, usual, {-1016, 208}},
        {"right screen", three, {2600, 1400}, usual, {1912, 912}},
        {"the border belongs to the right screen", three, {1440, 450}, usual, {1448, 220}},
        {"between screens: the main one", three, {-500, 50}, usual, {8, 38}},
        {"no screen at all", {}, {1400, 10}, usual, {712, 8}},
    };
    for (auto const& c : cases)
        EXPECT_EQ(Placement::originAtCursor(c.screens, c.mouse, c.size), c.origin) << c.what;
}

TEST(Placement, PanelUnderTheItemOrInTheCorner) {
    struct {
        char const* what;
        Screens screens;
        std::optional<Rect> item;
        Size size;
        Point origin;
    } const cases[]{
        {"under the item", one, Rect{700, 4, 22, 22}, usual, {351, 38}},
        {"centred, six points below", one, Rect{700, 40, 22, 22}, usual, {351, 68}},
        {"item at the right end", one, Rect{1410, 40, 22, 22}, usual, {712, 68}},
        {"item at the bottom", one, Rect{700, 870, 22, 22}, usual, {708, 42}},
        {"exactly 200 points are too few", one, Rect{700, 678, 22, 22}, usual, {708, 42}},
        {"just enough", one, Rect{700, 677, 22, 22}, usual, {351, 432}},
        {"item nowhere", one, std::nullopt, usual, {708, 42}},
        {"item on another screen", three, Rect{-600, 204, 22, 22}, usual, {-949, 232}},
        {"no screen", {}, std::nullopt, usual, {708, 12}},
    };
    for (auto const& c : cases)
        EXPECT_EQ(Placement::panelOrigin(c.screens, c.item, c.size), c.origin) << c.what;
}

TEST(Placement, PopoverHangsByItsArrow) {
    struct {
        char const* what;
        std::optional<Rect> item;
        Size size;
        Placement::Hanging hanging;
    } const cases[]{
        {"below", Rect{700, 4, 22, 22}, usual, {{351, 36, 720, 460}, ArrowEdge::top, 360}},
        {"arrow follows", Rect{1380, 4, 22, 22}, usual, {{712, 36, 720, 460}, ArrowEdge::top, 679}},
        {"arrow clear of the corner",
         Rect{1418, 4, 22, 22},
         usual,
         {{712, 36, 720, 460}, ArrowEdge::top, 699}},
        {"above an item at the bottom",
         Rect{700, 874, 22, 22},
         usual,
         {{351, 404, 720, 460}, ArrowEdge::bottom, 360}},
        {"nowhere to hang from", std::nullopt, usual, {{708, 42, 720, 460}, ArrowEdge::none, 0}},
        {"higher than the screen",
         Rect{700, 4, 22, 22},
         {720, 1000},
         {{351, 36, 720, 852}, ArrowEdge::top, 360}},
    };
    for (auto const& c : cases) {
        auto const hanging = Placement::popoverFrame(one, c.item, c.size);
        EXPECT_EQ(hanging.frame, c.hanging.frame) << c.what;
        EXPECT_EQ(hanging.arrow, c.hanging.arrow) << c.what;
        EXPECT_EQ(hanging.arrowX, c.hanging.arrowX) << c.what;
    }
}

TEST(Placement, SizesKeepTheirLimits) {
    EXPECT_EQ(Placement::clampedSize({2000, 2000}), Placement::maximumSize);
    EXPECT_EQ(Placement::clampedSize({10, 10}), Placement::minimumSize);
    EXPECT_EQ(Placement::clampedSize({280, 1000}), (Size{280, 1000}));
}

TEST(Placement, RememberedFrameCanAlwaysBeReached) {
    struct {
        char const* what;
        Screens screens;
        Rect frame;
        Rect expected;
    } const cases[]{
        {"where it was", one, {100, 100, 720, 460}, {100, 100, 720, 460}},
        {"half out, its title within reach", one, {1300, 880, 720, 460}, {1300, 880, 720, 460}},
        {"title above the screen", one, {100, -200, 720, 460}, {100, 38, 720, 460}},
        {"the left screen is gone", one, {-900, 300, 720, 460}, {8, 300, 720, 460}},
        {"on the left screen", three, {-900, 300, 720, 460}, {-900, 300, 720, 460}},
        {"to the nearest screen", three, {2900, 300, 720, 460}, {1912, 300, 720, 460}},
        {"larger than what is left",
         {{{0, 0, 800, 600}, {0, 0, 800, 600}, true}},
         {1500, 100, 1200, 900},
         {8, 8, 784, 584}},
        {"remembered from a coarser scale",
         {{{0, 0, 800, 600}, {0, 0, 800, 600}, true}},
         {100, 100, 900, 520},
         {8, 72, 784, 520}},
        {"no screen", {}, {5000, 5000, 720, 460}, {712, 432, 720, 460}},
    };
    for (auto const& c : cases)
        EXPECT_EQ(Placement::reachable(c.screens, c.frame), c.expected) << c.what;
}

} // namespace
} // namespace taliro
