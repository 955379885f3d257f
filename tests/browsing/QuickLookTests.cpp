#include "browsing/QuickLookCoordinator.h"

#include "browsing/BrowserState.h"

#include <gtest/gtest.h>

namespace taliro {
namespace {

struct FakePanel : PreviewPanel {
    bool visible = false;
    std::optional<QLItem> item;
    int attached = 0;
    int reloads = 0;
    bool isVisible() const override { return visible; }
    void reloadData(std::optional<QLItem> const& shown) override {
        item = shown;
        ++reloads;
    }
    void attachToBrowserWindow() override { ++attached; }
    void makeKeyAndOrderFront() override { visible = true; }
    void orderOut() override { visible = false; }
};

struct QuickLook : ::testing::Test {
    FakePanel panel;
    QuickLookCoordinator coordinator{[this] { return &panel; }};
    Url const a = Url::file("/a.txt");
    Url const b = Url::file("/b.txt");
};

TEST_F(QuickLook, TogglesAndFollowsTheSelectionWhileVisible) {
    BrowserState state{Url::file("/", true)};
    coordinator.attach(state);
    state.selectSingle(a);
    EXPECT_EQ(panel.reloads, 0) << "hidden, it follows nothing";

    coordinator.toggle(a);
    EXPECT_TRUE(panel.visible);
    EXPECT_EQ(panel.item->title(), "a.txt");
    EXPECT_EQ(panel.attached, 1);
    state.selectSingle(b);
    EXPECT_EQ(panel.item->url, b);
    coordinator.toggle(a); // shows another: retargeted, not hidden
    EXPECT_TRUE(panel.visible);
    EXPECT_EQ(panel.item->url, a);
    state.clearSelection();
    EXPECT_FALSE(panel.item);
    coordinator.toggle(b);
    coordinator.toggle(b);
    EXPECT_FALSE(panel.visible);
    coordinator.toggle(b); // the same again
    EXPECT_TRUE(panel.visible);

    BrowserState other{Url::file("/", true)};
    coordinator.attach(other);
    state.selectSingle(a);
    EXPECT_EQ(panel.item->url, b) << "the former state is not followed any more";
    other.selectSingle(a);
    EXPECT_EQ(panel.item->url, a);
}

TEST(QuickLookWithoutPanel, DoesNothing) {
    QuickLookCoordinator coordinator{[] { return nullptr; }};
    coordinator.toggle(Url::file("/a"));
    EXPECT_FALSE(coordinator.item());
}

} // namespace
} // namespace taliro
