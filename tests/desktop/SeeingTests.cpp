// What is seen of files: thumbnails, facts, previews, and the compact layout.

#include "desktop/Desktop.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

std::string titleOf(Desktop& desktop, std::string const& role) {
    auto const window = desktop.display().window(role);
    return window ? window->name : std::string();
}

bool isSelected(Program& program, QString const& name) {
    return waitFor([&] {
        return static_cast<bool>(program.tree().find([&](Accessible const& one) {
            return one.name() == name && one.role() == QStringLiteral("list item") &&
                   one.has(Accessible::State::selected);
        }));
    });
}

/// A picture in the plainest of formats.
std::string picture(int width, int height) {
    return "P6 " + std::to_string(width) + " " + std::to_string(height) + " 255\n" +
           std::string(static_cast<std::size_t>(width * height) * 3, '\x60');
}

void setWidth(Desktop& desktop, xcb_window_t window, std::uint32_t width) {
    auto& display = desktop.display();
    xcb_configure_window(display.connection(), window, XCB_CONFIG_WINDOW_WIDTH, &width);
    display.sync();
}

TEST(QuickLook, IsOpenedFollowsTheSelectionAndIsClosedBySpace) {
    Desktop desktop;
    auto& display = desktop.display();
    auto const first = desktop.write("Notes/a.txt", "alpha\n");
    desktop.write("Notes/b.txt", "beta\n");
    Program program(desktop, {first.string()});
    auto const panel = display.expectWindow("panel");
    ASSERT_TRUE(isSelected(program, "a.txt"));
    EXPECT_TRUE(waitFor([&] { return display.focused() == panel.id; }));

    display.key("space");
    auto const preview = display.expectWindow("preview");
    EXPECT_EQ(preview.name, "a.txt");
    EXPECT_EQ(display.values(preview.id, "WM_TRANSIENT_FOR"), std::vector<std::uint32_t>{panel.id});
    EXPECT_TRUE(waitFor([&] { return display.focused() == preview.id; }));
    program.tree().expect("", "UTF-8");

    display.key("Down");
    EXPECT_TRUE(waitFor([&] { return titleOf(desktop, "preview") == "b.txt"; }))
        << titleOf(desktop, "preview");
    EXPECT_TRUE(isSelected(program, "b.txt"));
    display.key("space");
    EXPECT_TRUE(display.waitUntilGone("preview"));
    EXPECT_TRUE(waitFor([&] { return display.focused() == panel.id; }));
    display.key("Up");
    ASSERT_TRUE(isSelected(program, "a.txt"));
    display.key("space");
    EXPECT_EQ(display.expectWindow("preview").name, "a.txt");
    EXPECT_TRUE(waitFor([&] { return display.focused() == display.window("preview")->id; }));
    display.key("Escape");
    EXPECT_TRUE(display.waitUntilGone("preview"));
    EXPECT_TRUE(display.window("panel"));
}

TEST(Inspector, TellsTheFactsOfWhatIsSelected) {
    Desktop desktop;
    auto const photo = desktop.write("Pictures/photo.ppm", picture(40, 20));
    desktop.makeFolder("Pictures/Raw");
    Program program(desktop, {photo.string()});
    desktop.display().expectWindow("panel");
    ASSERT_TRUE(isSelected(program, "photo.ppm"));
    auto const inspector = program.tree().expect("", "Inspector");
    for (auto const* fact : {"Kind", "Dimensions", "40 × 20", "Size", "2 KB", "Modified"})
        inspector.expect("", QString::fromUtf8(fact));
    // The thumbnail is there once the shared store has it; the file is too new to be kept, so look at the
    // size alone.
    desktop.display().key("Home");
    ASSERT_TRUE(isSelected(program, "Raw"));
    EXPECT_TRUE(inspector.waitUntilGone("", "Dimensions"));
    EXPECT_FALSE(static_cast<bool>(inspector.find("", "Size")));
    inspector.expect("", "Modified");
}

TEST(MiniBrowser, TakesOverWhereTheBrowserIsNarrow) {
    Desktop desktop;
    auto& display = desktop.display();
    desktop.write("Trip/one.txt");
    auto const last = desktop.write("Trip/two.txt");
    desktop.makeFolder("Trip/Raw");
    Program program(desktop, {last.parent_path().string()});
    auto const panel = display.expectWindow("panel");
    program.tree().expect("", "Find in folder");
    setWidth(desktop, panel.id, 290);
    program.tree().expect("", "Favorites");
    EXPECT_TRUE(program.tree().waitUntilGone("", "Find in folder"));
    program.tree().expect("", "Trip");

    display.key("Up"); // With nothing selected, the last.
    EXPECT_TRUE(isSelected(program, "two.txt"));
    display.key("Control+i");
    display.expectWindow("information");
    program.tree().expect("", "Kind");
    display.key("Escape");
    EXPECT_TRUE(display.waitUntilGone("information"));
    display.key("Up");
    EXPECT_TRUE(isSelected(program, "one.txt"));
    display.key("Up");
    EXPECT_TRUE(isSelected(program, "Raw"));
    display.key("Right");
    program.tree().expect("", "Empty folder");
    display.key("Left");
    program.tree().expect("list item", "one.txt");

    setWidth(desktop, panel.id, 720);
    program.tree().expect("", "Find in folder");
    EXPECT_TRUE(display.window("panel"));
}

} // namespace
} // namespace taliro::testing
