// The preferences window.

#include "desktop/Desktop.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

using State = Accessible::State;

bool stores(Desktop& desktop, std::string const& key, bool value) {
    return waitFor([&] {
        auto const text = desktop.storedDefaults();
        auto const at = text.find("<key>" + key + "</key>");
        auto const word = text.find('<', at + key.size() + 11);
        return at != std::string::npos && word != std::string::npos &&
               text.compare(word, 6, value ? "<true/" : "<false") == 0;
    });
}

void click(Desktop& desktop, Accessible const& control) {
    auto const place = control.place();
    desktop.display().click(place.midX(), place.midY());
}

/// The window with the keyboard, once the program knows where the window manager put it.
WindowInfo settled(Desktop& desktop, Program& program) {
    auto& display = desktop.display();
    auto window = display.expectWindow("preferences");
    EXPECT_TRUE(waitFor([&] { return display.focused() == window.id; }));
    auto const tabs = program.tree().expect("", "Tabs");
    EXPECT_TRUE(waitFor([&] {
        window = display.window("preferences").value_or(window);
        return tabs.place().x == window.place.x && tabs.place().y == window.place.y;
    })) << "the tabs are at "
        << tabs.place() << ", the window at " << window.place;
    return window;
}

WindowInfo openFromPanel(Desktop& desktop, Program& program) {
    auto& display = desktop.display();
    auto const panel = display.expectWindow("panel");
    EXPECT_TRUE(waitFor([&] { return display.focused() == panel.id; }));
    display.key("Control+comma");
    return settled(desktop, program);
}

void dismissAlert(Program& program, char const* title) {
    auto const alert = program.tree().expect("", QString::fromUtf8(title));
    program.tree().expect("push button", "OK").act();
    EXPECT_TRUE(waitFor([&] { return !alert.isShowing(); }));
}

bool areInFrontOf(Display& display, std::string_view role) {
    return waitFor([&] {
        auto const all = display.windows(); // the lowest first
        auto const other = std::ranges::find(all, role, &WindowInfo::role);
        return std::ranges::find(other, all.end(), "preferences", &WindowInfo::role) != all.end();
    });
}

TEST(Preferences, EditSettingsAndFollowThem) {
    Desktop desktop({.tray = true});
    Program program(desktop, {});
    auto& display = desktop.display();
    display.expectWindow("panel");
    program.tree().expect("push button", "Show as Menu Bar Popover").act();
    display.expectWindow("popover");
    EXPECT_TRUE(waitFor([&] { return display.focused() == display.window("popover")->id; }));
    display.key("Control+comma");
    EXPECT_EQ(settled(desktop, program).name, "Taliro Preferences");

    auto const icon = program.tree().expect("check box", "Show icon in menu bar");
    auto const help = QStringLiteral("Open Taliro from Finder to reach Preferences again.");
    EXPECT_TRUE(icon.has(State::checked));
    EXPECT_FALSE(program.tree().find("label", help).isShowing());
    click(desktop, icon);
    program.tree().expect("label", help);
    EXPECT_TRUE(stores(desktop, "showMenuBarIcon", false));
    EXPECT_TRUE(stores(desktop, "popoverMode", false)) << "a popover needs the icon";
    display.expectWindow("panel");

    program.tree().expect("push button", "Show as Menu Bar Popover").act();
    EXPECT_TRUE(waitFor([&] { return icon.has(State::checked); })) << "the switch follows";
    EXPECT_TRUE(program.tree().waitUntilGone("label", help));
}

TEST(Preferences, KeepTheirTabAndStayInFront) {
    Desktop desktop;
    Program program(desktop);
    auto& display = desktop.display();
    auto const panel = display.expectWindow("panel");
    EXPECT_TRUE(waitFor([&] { return display.focused() == panel.id; }));
    display.key("Super+comma");
    auto const window = settled(desktop, program);
    click(desktop, program.tree().expect("radio button", "Advanced"));
    program.tree().expect("check box", "Sync Favorites with Finder");

    display.click(panel.place.x + 60, panel.place.maxY() - 8);
    EXPECT_TRUE(waitFor([&] { return display.focused() == panel.id; }));
    EXPECT_TRUE(areInFrontOf(display, "panel"));

    display.key("Control+comma");
    EXPECT_TRUE(waitFor([&] { return display.focused() == window.id; }));
    display.key("Escape");
    EXPECT_TRUE(display.waitUntilGone("preferences"));
    EXPECT_TRUE(waitFor([&] { return display.focused() == panel.id; }));
    display.key("Control+comma");
    display.expectWindow("preferences");
    program.tree().expect("check box", "Sync Favorites with Finder");
    display.key("Control+q");
    EXPECT_EQ(program.process().waitForExit(), 0);
}

TEST(Preferences, ClicksInThemKeepThePopoverOpen) {
    Desktop desktop({.tray = true});
    Program program(desktop);
    auto& display = desktop.display();
    display.expectWindow("panel");
    program.tree().expect("push button", "Show as Menu Bar Popover").act();
    auto const popover = display.expectWindow("popover");
    EXPECT_TRUE(waitFor([&] { return display.focused() == popover.id; }));
    display.key("Control+comma");
    display.expectWindow("preferences");
    EXPECT_TRUE(areInFrontOf(display, "popover"));
    auto const window = settled(desktop, program);
    auto const appearance = program.tree().expect("radio button", "Appearance");
    click(desktop, appearance);
    EXPECT_TRUE(waitFor([&] { return appearance.has(State::checked); }));
    // On the frame, too, which is the window manager's.
    display.click(window.place.x + 60, window.place.y - 8);
    auto const closes = program.tree().expect("check box", "Close on click outside");
    click(desktop, closes);
    EXPECT_TRUE(stores(desktop, "closePopoverOnOutsideClick", false));
    click(desktop, closes);
    EXPECT_TRUE(stores(desktop, "closePopoverOnOutsideClick", true));
    EXPECT_TRUE(display.window("popover"));
    display.click(20, 780);
    EXPECT_TRUE(display.waitUntilGone("popover"));
}

TEST(Preferences, RecordAShortcutThatWorksAtOnce) {
    Desktop desktop;
    Program program(desktop);
    auto& display = desktop.display();
    openFromPanel(desktop, program);
    auto const recorder = program.tree().expect("", "Keyboard shortcut");
    EXPECT_FALSE(program.tree().find("push button", "Reset to Default").isShowing());
    click(desktop, recorder);
    EXPECT_TRUE(waitFor([&] { return recorder.has(State::focused); }));
    display.key("Control+Alt+k");
    auto const reset = program.tree().expect("push button", "Reset to Default");
    EXPECT_TRUE(waitFor([&] { return recorder.text() == "⌃⌥K"; })) << recorder.text().toStdString();
    display.key("Control+Alt+k");
    EXPECT_TRUE(display.waitUntilGone("panel"));

    click(desktop, reset);
    EXPECT_TRUE(program.tree().waitUntilGone("push button", "Reset to Default"));
    display.key("Control+Alt+Super+p");
    display.expectWindow("panel");

    program.tree().expect("push button", "Clear shortcut").act();
    program.tree().expect("push button", "Reset to Default");
    EXPECT_EQ(recorder.text(), QString());
}

TEST(Preferences, StartAtLoginIsWhatTheSessionWillDo) {
    Desktop desktop;
    std::filesystem::path const entry =
        desktop.environment().at("XDG_CONFIG_HOME") + "/autostart/com.taliro.Taliro.desktop";
    Program program(desktop);
    openFromPanel(desktop, program);
    auto const start = program.tree().expect("check box", "Start at login");
    EXPECT_FALSE(start.has(State::checked));
    click(desktop, start);
    EXPECT_TRUE(waitFor([&] { return contentsOf(entry).find("Exec=") != std::string::npos; }));
    EXPECT_TRUE(stores(desktop, "startAtLogin", true));
    click(desktop, start);
    EXPECT_TRUE(waitFor([&] { return !std::filesystem::exists(entry); }));
    EXPECT_TRUE(stores(desktop, "startAtLogin", false));

    // A folder that can't be written: said, and the switch stays as it was turned.
    std::filesystem::remove(entry.parent_path());
    std::ofstream(entry.parent_path()) << "in the way";
    click(desktop, start);
    dismissAlert(program, "Couldn't enable Start at Login");
    EXPECT_TRUE(start.has(State::checked));
}

TEST(Preferences, WindowAtThePointerIsTheShortcutsChoice) {
    Desktop desktop;
    Program program(desktop);
    auto& display = desktop.display();
    openFromPanel(desktop, program);
    click(desktop, program.tree().expect("radio button", "Appearance"));
    click(desktop, program.tree().expect("check box", "Show at mouse cursor when triggered by hotkey"));
    EXPECT_TRUE(stores(desktop, "showWindowAtCursorOnHotkey", true));
    display.key("Escape");
    EXPECT_TRUE(display.waitUntilGone("preferences"));
    display.key("Control+Alt+Super+p");
    EXPECT_TRUE(display.waitUntilGone("panel"));
    display.move(0, 0);
    display.key("Control+Alt+Super+p");
    display.expectWindow("panel");
    EXPECT_TRUE(waitFor([&] {
        auto const panel = display.window("panel");
        return panel && panel->place.x == 8 && panel->place.y == 8;
    }));
}

TEST(Preferences, SyncingFavoritesWarnsWhereItCantAndFollowsTheSidebar) {
    Desktop desktop;
    Program program(desktop);
    openFromPanel(desktop, program);
    auto const warning = QStringLiteral("Full Disk Access isn't granted — showing default favorites.");
    click(desktop, program.tree().expect("radio button", "Advanced"));
    auto const sync = program.tree().expect("check box", "Sync Favorites with Finder");
    EXPECT_FALSE(program.tree().find("label", warning).isShowing());
    click(desktop, sync);
    program.tree().expect("label", warning);
    program.tree().expect("push button", "Open System Settings").act();
    dismissAlert(program, "This desktop has no settings page for file access");
    click(desktop, sync);
    EXPECT_TRUE(program.tree().waitUntilGone("label", warning));

    click(desktop, sync);
    program.tree().expect("label", warning);
    program.tree().expect("push button", "Turn off sync").act();
    EXPECT_TRUE(program.tree().waitUntilGone("label", warning));
    EXPECT_FALSE(sync.has(State::checked));
}

} // namespace
} // namespace taliro::testing
