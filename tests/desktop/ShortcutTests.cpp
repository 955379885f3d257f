// The global shortcut, pressed in other programs.

#include "desktop/Desktop.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

constexpr char toggle[] = "Control+Alt+Super+p";

bool waitUntilForeignHasFocus(Display& display) {
    return waitFor([&] {
        auto const windows = display.windows();
        auto const focused = display.focused();
        return std::ranges::any_of(
            windows, [&](auto const& one) { return one.klass == "Foreign" && one.id == focused; });
    });
}

TEST(Shortcut, TogglesFromOtherProgramsInBothModesWithEachLock) {
    for (std::string const role : {"panel", "popover"}) {
        Desktop desktop;
        if (role == "popover")
            desktop.writeDefaults("<key>popoverMode</key><true/>");
        Program program(desktop);
        auto& display = desktop.display();
        display.expectWindow(role);
        ForeignWindow const other(desktop.displayName(), {20, 600, 150, 150});
        for (auto const* lock : {"", "Caps_Lock", "Num_Lock", "Scroll_Lock"}) {
            if (*lock)
                display.key(lock);
            display.key(toggle);
            EXPECT_TRUE(display.waitUntilGone(role)) << role << ' ' << lock;
            EXPECT_TRUE(waitUntilForeignHasFocus(display));
            display.key(toggle);
            display.expectWindow(role);
            if (*lock)
                display.key(lock);
        }
        EXPECT_TRUE(program.process().isRunning());
    }
}

TEST(Shortcut, WorksWhileAMenuIsOpen) {
    Desktop desktop;
    Program program(desktop);
    auto& display = desktop.display();
    display.expectWindow("panel");
    auto const isMenuOpen = [&] {
        return std::ranges::any_of(display.windows(), [](WindowInfo const& one) {
            return !one.isManaged && one.klass == "Taliro" && one.place.width > 100 && one.place.height < 200;
        });
    };
    auto const more = program.tree().expect("", "More").place();
    display.click(more.midX(), more.midY());
    ASSERT_TRUE(waitFor(isMenuOpen));
    display.key(toggle);
    EXPECT_TRUE(display.waitUntilGone("panel"));
    EXPECT_TRUE(waitFor([&] { return !isMenuOpen(); })) << "it belongs to the panel";
    display.key(toggle);
    display.expectWindow("panel");
}

TEST(Shortcut, AnotherProgramsGrabIsOneLineAndTheRestWorks) {
    Desktop desktop;
    auto& display = desktop.display();
    constexpr std::uint8_t p = 33;
    auto* x = display.connection();
    xcb_grab_key(x, true, display.root(), XCB_MOD_MASK_ANY, p, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    display.sync();
    Program program(desktop);
    display.expectWindow("panel");
    EXPECT_TRUE(waitFor([&] {
        return program.output().find("Error registering hotkey ⌃⌥⌘P: 10\n") != std::string::npos;
    })) << program.output();
    program.tree().expect("", "Global shortcut ⌃⌥⌘P");
}

TEST(Shortcut, AStoreEditedByHandGrabsNoTyping) {
    Desktop desktop;
    desktop.writeDefaults("<key>factoryResetMarker_v3</key><true/>" // Or the first start resets all.
                          "<key>KeyboardShortcuts_togglePicker</key>"
                          R"(<string>{"carbonKeyCode":35,"carbonModifiers":0}</string>)");
    Program program(desktop);
    auto& display = desktop.display();
    auto const panel = display.expectWindow("panel");
    EXPECT_TRUE(
        waitFor([&] { return program.output().find("Error registering hotkey P:") != std::string::npos; }));
    auto const search = program.tree().expect("", "Find in folder").place();
    display.click(search.midX(), search.midY());
    EXPECT_TRUE(waitFor([&] {
        display.key("p");
        return program.tree().find("", "Find in folder").text().contains(QLatin1Char('p'));
    }));
    EXPECT_EQ(display.window("panel")->place, panel.place);
}

} // namespace
} // namespace taliro::testing
