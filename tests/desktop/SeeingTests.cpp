// What is seen of files: thumbnails, facts, previews, and the compact layout.

#include "desktop/Desktop.h"

#include "support/RiffFiles.h"

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
    display.expectWindow("preview");
    EXPECT_TRUE(waitFor([&] { return display.focused() == display.window("preview")->id; }));
    display.key("space");
    EXPECT_TRUE(display.waitUntilGone("preview"));
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

/// Processes that the program started and that run still.
std::vector<std::string> helpersOf(Program& program, std::string const& name) {
    std::vector<std::string> found;
    std::error_code error;
    for (auto const& folder : std::filesystem::directory_iterator("/proc", error)) {
        auto const status = contentsOf(folder.path() / "status");
        auto const parent = "\nPPid:\t" + std::to_string(program.process().pid()) + "\n";
        if (status.starts_with("Name:\t" + name) && status.contains(parent) &&
            !status.contains("\nState:\tZ"))
            found.push_back(folder.path().filename());
    }
    return found;
}

TEST(QuickLook, PlaysSoundsAndFilmsUntilTheSelectionMoves) {
    Desktop desktop;
    auto& display = desktop.display();
    auto const sound = desktop.write("Media/a.wav", wav(60));
    desktop.write("Media/b.mp3", "nothing that could be played");
    Program program(desktop, {sound.string()});
    display.expectWindow("panel");
    ASSERT_TRUE(isSelected(program, "a.wav"));
    EXPECT_TRUE(helpersOf(program, "taliro-player").empty()) << "nothing is loaded before it is looked at";
    display.key("space");
    display.expectWindow("preview");
    program.tree().expect("label", "1:00");
    auto const play = program.tree().expect("push button", "Play");
    EXPECT_TRUE(waitFor([&] { return play.has(Accessible::State::enabled); }));
    display.key("p");
    program.tree().expect("push button", "Pause");
    program.tree().expect("label", "0:01");
    program.tree().expect("push button", "Mute").act();
    program.tree().expect("push button", "Unmute");
    display.key("Shift+Right");
    program.tree().expect("label", "0:07");
    EXPECT_EQ(helpersOf(program, "taliro-player").size(), 1u);

    display.key("Down");
    EXPECT_TRUE(waitFor([&] { return titleOf(desktop, "preview") == "b.mp3"; }));
    EXPECT_TRUE(waitFor([&] { return helpersOf(program, "taliro-player").empty(); }));
    EXPECT_TRUE(program.tree().waitUntilGone("push button", "Pause"));
    EXPECT_TRUE(program.tree().waitUntilGone("push button", "Play")) << "the facts stay";
    display.key("space");
    EXPECT_TRUE(display.waitUntilGone("preview"));
}

TEST(Inspector, TellsTheFactsOfWhatIsSelected) {
    Desktop desktop;
    desktop.makeFolder("Files/Raw");
    auto const photo = desktop.write("Files/photo.ppm", picture(40, 20));
    auto const pages = desktop.write("Files/pages.pdf", std::string(1'500'000, ' '));
    using namespace std::chrono;
    // The third of February 2024, 04:05, in the tests' time zone.
    auto const then = file_clock::from_sys(sys_time<nanoseconds>(sys_days(2024y / February / 3) + 4h + 5min));
    for (auto const& path : {photo, pages})
        std::filesystem::last_write_time(path, then);
    Program program(desktop, {photo.string()});
    desktop.display().expectWindow("panel");
    auto const inspector = program.tree().expect("", "Inspector");
    auto const expectDate = [&] {
        EXPECT_TRUE(waitFor([&] {
            return static_cast<bool>(inspector.find([](Accessible const& one) {
                auto const text = one.name();
                return text.contains("Feb") && text.contains("2024") && text.contains("4:05");
            }));
        })) << inspector.dump();
    };
    ASSERT_TRUE(isSelected(program, "photo.ppm"));
    for (auto const* fact : {"Kind", "PPM image", "Dimensions", "40 × 20", "Size", "2 KB", "Modified"})
        inspector.expect("", QString::fromUtf8(fact));
    expectDate();
    desktop.display().key("Up");
    ASSERT_TRUE(isSelected(program, "pages.pdf"));
    for (auto const* fact : {"PDF document", "1.5 MB"})
        inspector.expect("", fact);
    EXPECT_TRUE(inspector.waitUntilGone("", "Dimensions"));
    expectDate();
    desktop.display().key("Home");
    ASSERT_TRUE(isSelected(program, "Raw"));
    EXPECT_TRUE(inspector.waitUntilGone("", "Size"));
    inspector.expect("", "Folder");
    inspector.expect("", "Modified");
    EXPECT_FALSE(static_cast<bool>(inspector.find("", "Dimensions")));
}

TEST(Grid, MovesByLinesOfAsManyCellsAsFit) {
    Desktop desktop;
    auto& display = desktop.display();
    constexpr int count = 30;
    auto const nameOf = [](int i) { return QStringLiteral("%1.txt").arg(i, 2, 10, QLatin1Char('0')); };
    for (int i = 0; i < count; ++i)
        desktop.write("Grid/" + nameOf(i).toStdString());
    Program program(desktop, {(desktop.home() / "Grid").string()});
    auto const panel = display.expectWindow("panel");
    EXPECT_TRUE(waitFor([&] { return display.focused() == panel.id; }));
    display.key("Control+1");
    auto const grid = program.tree().expect("list", "Files");
    auto const cell = [&](int i) { return program.tree().expect("list item", nameOf(i)).place(); };
    for (std::uint32_t const width : {700U, 900U, 1130U}) {
        SCOPED_TRACE(width);
        setWidth(desktop, panel.id, width);
        EXPECT_TRUE(waitFor([&] {
            auto const window = display.window("panel");
            return window && window->place.width == static_cast<int>(width) &&
                   grid.place().maxX() + 211 >= window->place.maxX(); // The inspector is beside it.
        }));
        int const columns = std::max(1, (std::max(grid.place().width - 24, 0) + 8) / 100);
        display.key("Home");
        ASSERT_TRUE(isSelected(program, nameOf(0)));
        EXPECT_EQ(cell(columns).x, cell(0).x) << "the next line begins there";
        EXPECT_GT(cell(columns).y, cell(0).y);
        EXPECT_EQ(cell(columns - 1).y, cell(0).y);
        std::pair<char const*, int> const steps[] = {
            {"Down", columns},   {"Right", columns + 1}, {"Up", 1},           {"Up", 0},
            {"Left", 0},         {"End", count - 1},     {"Down", count - 1}, {"Right", count - 1},
            {"Left", count - 2},
        };
        for (auto const& [key, expected] : steps) {
            display.key(key);
            ASSERT_TRUE(isSelected(program, nameOf(expected))) << key << " to " << expected;
        }
    }
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

    // As narrow as it gets, and back; what is selected stays so.
    display.key("Up");
    display.key("Up");
    ASSERT_TRUE(isSelected(program, "one.txt"));
    struct {
        std::uint32_t width;
        bool isMini, hasSearch;
    } const steps[] = {{700, false, true}, {516, false, false}, {515, true, false}, {280, true, false},
                       {515, true, false}, {516, false, false}, {700, false, true}};
    for (auto const& [width, isMini, hasSearch] : steps) {
        SCOPED_TRACE(width);
        setWidth(desktop, panel.id, width);
        program.tree().expect("", isMini ? "Favorites" : "Inspector");
        if (hasSearch) {
            program.tree().expect("", "Find in folder");
        } else {
            EXPECT_TRUE(program.tree().waitUntilGone("", "Find in folder"));
        }
        if (isMini) {
            EXPECT_TRUE(program.tree().waitUntilGone("", "Inspector"));
        }
        EXPECT_TRUE(isSelected(program, "one.txt"));
    }
    EXPECT_TRUE(display.window("panel"));
}

} // namespace
} // namespace taliro::testing
