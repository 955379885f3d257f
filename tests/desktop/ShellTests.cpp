// How the browser starts, comes and goes.

#include "desktop/Desktop.h"
#include "desktop/TrayOnTheBus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

bool storesReal(Desktop& desktop, std::string const& key, std::string const& value) {
    auto const text = desktop.storedDefaults();
    auto const at = text.find("<key>" + key + "</key>");
    auto const real = text.find("<real>", at);
    return at != std::string::npos && text.compare(real + 6, value.size(), value) == 0;
}

/// Where the tray has our icon, ready to be clicked.
Place trayIcon(Desktop& desktop) {
    auto& display = desktop.display();
    Place found;
    EXPECT_TRUE(waitFor([&] {
        for (auto const& window : display.windows()) {
            bool const isIcon = window.klass == "Taliro" && window.role.empty() && window.place.width <= 30 &&
                                window.place.width > 10;
            if (!isIcon)
                continue;
            found = window.place;
            display.move(found.midX(), found.midY());
            return display.underPointer() == window.id;
        }
        return false;
    })) << "no icon in the tray";
    return found;
}

/// The window once it has the keyboard: the window manager is then done with it.
WindowInfo expectReady(Desktop& desktop, std::string_view role) {
    auto const window = desktop.display().expectWindow(role);
    EXPECT_TRUE(waitFor([&] { return desktop.display().focused() == window.id; })) << role;
    return window;
}

Place placeOf(Desktop& desktop, std::string_view role) {
    auto const window = desktop.display().window(role);
    return window ? window->place : Place{};
}

void clickAt(Desktop& desktop, Place const& place, int button = 1) {
    desktop.display().click(place.midX(), place.midY(), button);
}

/// Below the tray's 30 points with the margin that panels keep.
constexpr int panelTop = 38;
/// Another program that drags a file about, as far as a target sees of it.
class ForeignDrag {
public:
    explicit ForeignDrag(Display& display)
        : m_display(display), m_source(xcb_generate_id(display.connection())) {
        auto* connection = display.connection();
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_source, display.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        display.button(1, true);
        xcb_set_selection_owner(connection, m_source, display.atom("XdndSelection"), XCB_CURRENT_TIME);
        display.sync();
    }
    ~ForeignDrag() {
        m_display.button(1, false);
        xcb_destroy_window(m_display.connection(), m_source);
        m_display.sync();
    }

    /// Moves to `place`, once a window to drop on has covered what `under` is.
    xcb_window_t waitForTarget(Place const& place, xcb_window_t under) {
        m_display.move(place.midX(), place.midY());
        EXPECT_TRUE(waitFor([&] { return m_display.underPointer() != under; })) << "nothing to drop on";
        auto const target = m_display.underPointer();
        EXPECT_FALSE(m_display.values(target, "XdndAware").empty());
        return target;
    }
    void enter(xcb_window_t target) {
        send(target, "XdndEnter", {m_source, 5u << 24, m_display.atom("text/uri-list"), 0, 0});
    }
    /// Whether the target would take a drop.
    bool isAccepted(xcb_window_t target, Place const& at) {
        auto const position = static_cast<std::uint32_t>(at.midX() << 16 | at.midY());
        send(target, "XdndPosition",
             {m_source, 0, position, XCB_CURRENT_TIME, m_display.atom("XdndActionCopy")});
        bool accepted = true;
        EXPECT_TRUE(waitFor([&] {
            while (auto* event = xcb_poll_for_event(m_display.connection())) {
                auto const message = *reinterpret_cast<xcb_client_message_event_t*>(event);
                std::free(event);
                if ((message.response_type & 0x7f) == XCB_CLIENT_MESSAGE &&
                    message.type == m_display.atom("XdndStatus")) {
                    accepted = message.data.data32[1] & 1;
                    return true;
                }
            }
            return false;
        })) << "the target does not answer";
        return accepted;
    }

private:
    void send(xcb_window_t target, char const* type, std::array<std::uint32_t, 5> const& data) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = target;
        event.type = m_display.atom(type);
        std::ranges::copy(data, event.data.data32);
        xcb_send_event(m_display.connection(), false, target, 0, reinterpret_cast<char const*>(&event));
        m_display.sync();
    }

    Display& m_display;
    xcb_window_t m_source;
};

constexpr char popoverMode[] = "<key>popoverMode</key><true/>";

TEST(Shell, ShowsTheHomeFolderWithTheKeyboardInIt) {
    Desktop desktop;
    desktop.makeFolder("Reports");
    desktop.write("notes.md");
    Program program(desktop);
    auto const panel = desktop.display().expectWindow("panel");
    program.tree().expect("", "Reports");
    program.tree().expect("", "notes.md");
    EXPECT_TRUE(waitFor([&] { return desktop.display().focused() == panel.id; }));
    EXPECT_TRUE(desktop.display().hasState(panel.id, "_NET_WM_STATE_ABOVE"));
    EXPECT_TRUE(desktop.display().hasState(panel.id, "_NET_WM_STATE_SKIP_TASKBAR"));
    EXPECT_EQ(desktop.display().values(panel.id, "_NET_WM_DESKTOP"), std::vector<std::uint32_t>{0xFFFFFFFF});
    EXPECT_EQ(program.process().terminate(), 128 + SIGTERM);
}

TEST(Shell, SecondStartSelectsItsFileInTheFirst) {
    Desktop desktop;
    desktop.write("Reports/may.odt");
    Program program(desktop);
    desktop.display().expectWindow("panel");
    program.tree().expect("", "Reports");
    EXPECT_EQ(runProgram(desktop, {"may.odt"}, desktop.home() / "Reports"), 0);
    program.tree().expect("", "may.odt");
    EXPECT_TRUE(waitFor([&] {
        return static_cast<bool>(program.tree().find([](Accessible const& one) {
            return one.name() == "may.odt" && one.has(Accessible::State::selected);
        }));
    }));
    EXPECT_TRUE(program.process().isRunning());
}

TEST(Shell, SaysInOneLineWhyItCannotStart) {
    Desktop desktop;
    EXPECT_EQ(runProgram(desktop, {"--version"}), 0);
    EXPECT_NE(runProgram(desktop, {"--frobnicate"}), 0);
    Program blind(desktop, {}, {{"DISPLAY", ":9999"}});
    EXPECT_EQ(blind.process().waitForExit(), 1);
    auto const output = blind.output();
    EXPECT_EQ(std::ranges::count(output, '\n'), 1) << output;
}

TEST(Shell, RunsWithoutABus) {
    Desktop desktop;
    Program program(desktop, {}, {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"}});
    desktop.display().expectWindow("panel");
    EXPECT_TRUE(program.process().isRunning());
}

TEST(Tray, LeftClickTogglesAndRightClickOpensTheMenu) {
    Desktop desktop({.tray = true});
    Program program(desktop);
    auto& display = desktop.display();
    display.expectWindow("panel");
    auto const icon = trayIcon(desktop);
    clickAt(desktop, icon);
    EXPECT_TRUE(display.waitUntilGone("panel"));
    clickAt(desktop, icon);
    auto const panel = display.expectWindow("panel");
    EXPECT_EQ(panel.place.y, panelTop) << "under the icon at " << icon;

    clickAt(desktop, icon, 3);
    display.expectWindow("status menu");
    EXPECT_TRUE(waitFor([&] { return display.isKeyboardGrabbed(); }));
    EXPECT_TRUE(display.window("panel")) << "a right click does not toggle";
    display.key("Escape");
    EXPECT_TRUE(display.waitUntilGone("status menu"));
    clickAt(desktop, icon);
    EXPECT_TRUE(display.waitUntilGone("panel")) << "the menu is not left attached";

    clickAt(desktop, icon, 3);
    display.expectWindow("status menu");
    EXPECT_TRUE(waitFor([&] { return display.isKeyboardGrabbed(); }));
    display.key("Up");
    display.key("Return");
    EXPECT_EQ(program.process().waitForExit(), 0) << "the last entry quits";
}

TEST(Tray, OnTheBusShowsOurMenuItself) {
    Desktop desktop;
    TrayOnTheBus tray(desktop.bus());
    Program program(desktop);
    EXPECT_TRUE(waitFor([&] { return tray.hasIcon(); })) << "no icon registered";
    EXPECT_THAT(tray.menuTitles(),
                ::testing::ElementsAre("Preferences…", "Check for Updates…", "", "Quit Taliro"));
    tray.choose("Quit Taliro");
    EXPECT_EQ(program.process().waitForExit(), 0);
}

TEST(Tray, StripStandsInUntilATrayComes) {
    Desktop desktop;
    Program program(desktop);
    auto& display = desktop.display();
    display.expectWindow("panel");
    auto const strip = display.expectWindow("status item");
    clickAt(desktop, strip.place);
    EXPECT_TRUE(display.waitUntilGone("panel"));
    desktop.startTray();
    EXPECT_TRUE(display.waitUntilGone("status item"));
    clickAt(desktop, trayIcon(desktop));
    display.expectWindow("panel");
}

TEST(Tray, DragOverTheIconBringsTheBrowserAndIsRefusedThere) {
    Desktop desktop({.tray = true});
    Program program(desktop);
    auto& display = desktop.display();
    display.expectWindow("panel");
    auto const icon = trayIcon(desktop);
    auto const iconWindow = display.underPointer();
    clickAt(desktop, icon);
    EXPECT_TRUE(display.waitUntilGone("panel"));
    display.move(400, 400);
    {
        ForeignDrag drag(display);
        auto const target = drag.waitForTarget(icon, iconWindow);
        drag.enter(target);
        display.expectWindow("panel");
        EXPECT_FALSE(drag.isAccepted(target, icon));
    }
    clickAt(desktop, trayIcon(desktop));
    EXPECT_TRUE(display.waitUntilGone("panel")) << "the icon takes clicks again once the drag is over";
}

TEST(Popover, HangsUnderTheIconUntilEscapeOrAClickElsewhere) {
    Desktop desktop({.tray = true});
    desktop.writeDefaults(popoverMode);
    desktop.write("notes.md");
    Program program(desktop);
    auto& display = desktop.display();
    auto const popover = display.expectWindow("popover");
    auto const icon = trayIcon(desktop);
    EXPECT_EQ(popover.place.y, icon.maxY());
    EXPECT_LT(popover.place.x, icon.x);
    EXPECT_GT(popover.place.maxX(), icon.maxX());
    EXPECT_TRUE(waitFor([&] { return display.focused() == popover.id; }));
    auto const search = program.tree().expect("text", "Find in folder");
    display.key("Control+f");
    EXPECT_TRUE(waitFor([&] { return search.has(Accessible::State::focused); }));
    display.type("no");
    EXPECT_TRUE(waitFor([&] { return search.text() == "no"; }));
    display.key("Escape");
    EXPECT_TRUE(waitFor([&] { return search.text().isEmpty(); }));
    display.key("Escape");
    EXPECT_TRUE(waitFor([&] { return !search.has(Accessible::State::focused); }));
    EXPECT_TRUE(display.window("popover")) << "Escape is the edited field's";
    display.key("Escape");
    EXPECT_TRUE(display.waitUntilGone("popover"));

    ForeignWindow const other(desktop.displayName(), {40, 500, 200, 200});
    EXPECT_TRUE(waitFor([&] {
        return std::ranges::any_of(display.windows(), [](auto const& one) { return one.klass == "Foreign"; });
    }));
    clickAt(desktop, icon);
    display.expectWindow("popover");
    clickAt(desktop, icon);
    EXPECT_TRUE(display.waitUntilGone("popover")) << "a click on the icon closes it and leaves it closed";
    clickAt(desktop, icon);
    display.expectWindow("popover");
    display.click(100, 600);
    EXPECT_TRUE(display.waitUntilGone("popover"));
}

TEST(Popover, StaysOnOutsideClicksWhereTheUserWantsThat) {
    Desktop desktop({.tray = true});
    desktop.writeDefaults(std::string(popoverMode) + "<key>closePopoverOnOutsideClick</key><false/>");
    Program program(desktop);
    auto& display = desktop.display();
    auto const popover = expectReady(desktop, "popover");
    display.click(popover.place.x - 40, popover.place.maxY() + 40);
    // A later click that worked shows that the earlier one was heard.
    auto const inspector = program.tree().expect("", "Hide info for selected item").place();
    display.click(inspector.midX(), inspector.midY());
    EXPECT_TRUE(waitFor([&] { return desktop.storedDefaults().find("showInspector") != std::string::npos; }));
    EXPECT_TRUE(display.window("popover"));
}

TEST(Popover, HandlesStoreTheSizeWithinItsLimits) {
    Desktop desktop({.tray = true});
    desktop.writeDefaults(popoverMode);
    Program program(desktop);
    auto& display = desktop.display();
    auto const popover = expectReady(desktop, "popover");
    auto place = popover.place;
    display.drag(place.x + 12, place.maxY() - 12, place.x + 12 - 60, place.maxY() - 12 + 40);
    EXPECT_TRUE(waitFor([&] {
        return storesReal(desktop, "popoverWidth", "780") && storesReal(desktop, "popoverHeight", "500");
    })) << desktop.storedDefaults();
    // The edges away from the handle stay.
    place = {place.x - 60, place.y, place.width + 60, place.height + 40};
    EXPECT_TRUE(waitFor([&] { return placeOf(desktop, "popover") == place; })) << placeOf(desktop, "popover");
    display.move(place.maxX() - 12, place.maxY() - 12);
    EXPECT_TRUE(waitFor([&] { return display.underPointer() == popover.id; }))
        << "the window's shape has not grown with it";
    display.drag(place.maxX() - 12, place.maxY() - 12, place.x + 20, place.y + 60);
    EXPECT_TRUE(waitFor([&] {
        return storesReal(desktop, "popoverWidth", "280") && storesReal(desktop, "popoverHeight", "300");
    })) << desktop.storedDefaults();
    EXPECT_TRUE(waitFor([&] { return placeOf(desktop, "popover").width == 280; }))
        << placeOf(desktop, "popover");
}

TEST(Panel, RemembersItsFrame) {
    Desktop desktop;
    Place moved;
    {
        Program program(desktop);
        auto& display = desktop.display();
        auto const before = expectReady(desktop, "panel").place;
        auto const becomes = [&](Place const& wanted) {
            return waitFor([&] { return placeOf(desktop, "panel") == wanted; });
        };
        Place const there{before.x - 90, before.y + 60, before.width, before.height};
        display.drag(before.midX(), before.y + 10, before.midX() - 90, before.y + 70);
        EXPECT_TRUE(becomes(there)) << placeOf(desktop, "panel");
        moved = {there.x, there.y, there.width + 60, there.height};
        display.drag(there.maxX() - 2, there.midY(), there.maxX() + 58, there.midY());
        EXPECT_TRUE(becomes(moved)) << placeOf(desktop, "panel");
        auto const text = std::to_string(moved.x) + ' ' + std::to_string(moved.y) + ' ' +
                          std::to_string(moved.width) + ' ' + std::to_string(moved.height);
        EXPECT_TRUE(waitFor([&] { return desktop.storedDefaults().find(text) != std::string::npos; }))
            << desktop.storedDefaults();
    }
    Program again(desktop);
    EXPECT_EQ(desktop.display().expectWindow("panel").place, moved);
}

TEST(Panel, ShortcutShowsItAtThePointerInsideTheScreen) {
    Desktop desktop;
    desktop.writeDefaults("<key>showWindowAtCursorOnHotkey</key><true/>");
    Program program(desktop);
    auto& display = desktop.display();
    expectReady(desktop, "panel");
    auto const toggle = [&] { display.key("Control+Alt+Super+p"); };
    toggle();
    EXPECT_TRUE(display.waitUntilGone("panel"));
    struct {
        int x, y;
        Place expected;
    } const cases[]{
        {0, 0, {8, 8, 720, 460}},          {1279, 0, {552, 8, 720, 460}},    {0, 799, {8, 332, 720, 460}},
        {1279, 799, {552, 332, 720, 460}}, {640, 400, {280, 170, 720, 460}},
    };
    for (auto const& c : cases) {
        display.move(c.x, c.y);
        toggle();
        EXPECT_EQ(expectReady(desktop, "panel").place, c.expected) << c.x << ", " << c.y;
        toggle();
        EXPECT_TRUE(display.waitUntilGone("panel"));
    }
}

TEST(Panel, TitleButtonSwitchesBothWays) {
    Desktop desktop({.tray = true});
    // Far from where the popover will be: the pointer is then over nothing of ours.
    desktop.writeDefaults("<key>TaliroPanel</key><string>20 320 720 460</string>");
    Program program(desktop);
    auto& display = desktop.display();
    auto const clickTitle = [&](char const* button, int times) {
        auto const place = program.tree().expect("push button", button).place();
        display.click(place.midX(), place.midY(), 1, times);
    };
    expectReady(desktop, "panel");
    clickTitle("Show as Menu Bar Popover", 1);
    expectReady(desktop, "popover");
    EXPECT_FALSE(display.window("panel"));
    clickTitle("Show as Window", 1);
    auto const panel = expectReady(desktop, "panel");
    EXPECT_TRUE(display.waitUntilGone("popover"));
    EXPECT_EQ(panel.place.y, panelTop);
}

/// Divides the X screen into monitors, given as xrandr takes them: width/mm x height/mm + x + y.
void setMonitor(Desktop& desktop, std::string const& name, std::string const& place) {
    bool const isMain = name == "main";
    auto const status = Process({"xrandr", "--setmonitor", name, place, isMain ? "screen" : "none"},
                                desktop.environment(), desktop.log("xrandr"))
                            .waitForExit();
    EXPECT_EQ(status, 0) << contentsOf(desktop.log("xrandr"));
}

/// A small monitor at the left, with the tray along its top, and the main one right of it, which reaches
/// higher. At a scale of 2, everything takes twice as many pixels.
TEST(Screens, EachGetsItsWindowsAtEveryScale) {
    for (int const scale : {1, 2}) {
        SCOPED_TRACE(scale);
        Desktop desktop({.width = 2100 * scale, .height = 900 * scale});
        auto const monitor = [&](int width, int height, int x, int y) {
            auto const length = [&](int points) { return std::to_string(points * scale); };
            return length(width) + "/300x" + length(height) + "/200+" + length(x) + "+" + length(y);
        };
        setMonitor(desktop, "main", monitor(1200, 900, 900, 0));
        setMonitor(desktop, "left", monitor(900, 700, 0, 100));
        desktop.startTray();
        // A screen's corner is where it is in pixels; points count from there.
        auto const remembered = "40 " + std::to_string(100 * scale + 140) + " 720 460";
        desktop.writeDefaults("<key>showWindowAtCursorOnHotkey</key><true/><key>TaliroPanel</key><string>" +
                              remembered + "</string>");
        Program program(desktop, {}, {{"QT_SCALE_FACTOR", std::to_string(scale)}});
        auto& display = desktop.display();
        auto const inPixels = [&](Place const& points) {
            return Place{points.x * scale, points.y * scale, points.width * scale, points.height * scale};
        };
        EXPECT_EQ(expectReady(desktop, "panel").place, inPixels({40, 240, 720, 460}));
        auto const toggle = [&] { display.key("Control+Alt+Super+p"); };
        struct {
            int x, y; ///< the pointer
            Place expected;
        } const cases[]{
            {899, 100, {172, 100 + 30 / scale + 8, 720, 460}},
            {0, 799, {8, 332, 720, 460}},
            {900, 0, {908, 8, 720, 460}},
            {2099, 899, {1372, 432, 720, 460}},
            {400, 450, {40, 220, 720, 460}},
        };
        for (auto const& c : cases) {
            toggle();
            EXPECT_TRUE(display.waitUntilGone("panel"));
            display.move(c.x * scale, c.y * scale);
            toggle();
            EXPECT_EQ(expectReady(desktop, "panel").place, inPixels(c.expected)) << c.x << ", " << c.y;
        }
        EXPECT_EQ(Process({"xrandr", "--delmonitor", "left"}, desktop.environment(), desktop.log("xrandr"))
                      .waitForExit(),
                  0);
        EXPECT_TRUE(waitFor([&] { return placeOf(desktop, "panel").x == 908 * scale; }))
            << "onto the screen that is left: " << placeOf(desktop, "panel");

        program.tree().expect("push button", "Show as Menu Bar Popover").act();
        auto const isUnder = [&](Place const& icon) {
            auto const popover = placeOf(desktop, "popover");
            return popover.y == icon.maxY() && popover.x < icon.x && popover.maxX() > icon.maxX();
        };
        expectReady(desktop, "popover");
        EXPECT_TRUE(waitFor([&] { return isUnder(trayIcon(desktop)); })) << placeOf(desktop, "popover");
        setMonitor(desktop, "left", monitor(900, 700, 0, 100));
        EXPECT_TRUE(waitFor([&] { return isUnder(trayIcon(desktop)); }))
            << "follows the tray: " << placeOf(desktop, "popover") << trayIcon(desktop);
    }
}

} // namespace
} // namespace taliro::testing
