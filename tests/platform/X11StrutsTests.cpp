#include "platform/linux/X11Struts.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

TEST(X11Struts, TakeFromTheScreensThatTheyLieOn) {
    constexpr Size desktop{3000, 1200};
    constexpr Rect left{0, 200, 1000, 800};
    constexpr Rect right{1000, 0, 2000, 1200};
    constexpr X11Strut topOfLeft{0, 0, 230, 0, 0, 0, 0, 0, 0, 999, 0, 0};
    constexpr X11Strut bottomOfRight{0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 1000, 2999};
    constexpr X11Strut bottomOfLeft{0, 0, 0, 240, 0, 0, 0, 0, 0, 0, 0, 999};
    constexpr X11Strut leftOfRight{1060, 0, 0, 0, 0, 1199, 0, 0, 0, 0, 0, 0};
    struct {
        char const* what;
        Rect screen;
        std::vector<X11Strut> struts;
        Rect visible;
    } const cases[]{
        {"none", left, {}, left},
        {"a panel at the top", left, {topOfLeft}, {0, 230, 1000, 770}},
        {"that panel is the other screen's", right, {topOfLeft}, right},
        {"two panels", left, {topOfLeft, bottomOfLeft}, {0, 230, 1000, 730}},
        {"a dock between the screens", right, {leftOfRight, bottomOfRight}, {1060, 0, 1940, 1160}},
        {"it reaches across the whole left screen", left, {leftOfRight}, left},
    };
    for (auto const& c : cases)
        EXPECT_EQ(visiblePart(c.screen, desktop, c.struts), c.visible) << c.what;
}

} // namespace
} // namespace taliro::testing
