// Files in and out of the browser, by real drags between two programs.

#include "desktop/Desktop.h"

#include <gtest/gtest.h>

namespace taliro::testing {
namespace {

struct Spot {
    int x, y;
};

/// The other program of a drag: it tells what happens to it in lines.
class Client {
public:
    Client(Desktop& desktop, std::string const& program, std::vector<std::string> arguments)
        : m_display(desktop.display()), m_log(desktop.log("client " + std::to_string(++m_started))) {
        arguments.insert(arguments.begin(), {program, "40", "500"});
        m_process = Process(arguments, desktop.environment(), m_log);
        EXPECT_TRUE(waitFor([&] { return place().width > 0; })) << said();
    }
    ~Client() {
        m_process.terminate();
        EXPECT_TRUE(waitFor([&] { return place().width == 0; })); // else the next would be taken for it
    }
    Spot middle() { return {place().midX(), place().midY()}; }
    std::string said() const { return contentsOf(m_log); }
    /// Whether it said this line since `forget`.
    bool says(std::string const& line) const {
        return ("\n" + said().substr(m_heard)).find("\n" + line + "\n") != std::string::npos;
    }
    void forget() { m_heard = said().size(); }

private:
    /// Of its window, once the user can see it.
    Place place() {
        for (auto const& window : m_display.windows())
            if (window.name.starts_with("drag "))
                return window.place;
        return {};
    }

    static inline int m_started = 0;

    Display& m_display;
    std::filesystem::path m_log;
    Process m_process;
    std::size_t m_heard = 0;
};

/// A drag with the pointer, as a hand does it.
class Hand {
public:
    explicit Hand(Display& display) : m_display(display) {}

    void press(Spot at) {
        m_display.move(at.x, at.y);
        m_display.button(1, true);
        m_at = at;
    }
    void release() { m_display.button(1, false); }
    void moveTo(Spot to) {
        auto const from = m_at;
        int const steps = from.x == to.x && from.y == to.y ? 1 : 12;
        for (int i = 1; i <= steps; ++i) {
            m_display.move(from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps);
            m_display.sync();
        }
        m_at = to;
    }
    /// Goes there and trembles until `condition` holds; whether it did in time.
    bool hover(Spot at, std::function<bool()> const& condition) {
        return hover([at] { return at; }, condition);
    }
    /// The same over what may still move.
    bool hover(std::function<Spot()> const& where, std::function<bool()> const& condition) {
        int trembling = 0;
        return waitFor([&] {
            moveTo(where());
            m_display.move(m_at.x + trembling++ % 3, m_at.y);
            m_display.sync();
            return condition();
        });
    }

private:
    Display& m_display;
    Spot m_at{};
};

class Drag : public ::testing::Test {
protected:
    Desktop desktop;
    Display& display = desktop.display();
    Hand hand{display};
    std::unique_ptr<Program> program;

    void start(std::string const& folder = "Work") {
        program = std::make_unique<Program>(desktop, std::vector{(desktop.home() / folder).string()});
        // One list, in which a resting drag opens folders and closes none.
        auto const list = program->tree().expect("radio button", "List").place();
        display.click(list.midX(), list.midY());
        program->tree().expect("list", "Files");
    }
    Client source(std::vector<std::string> const& offered) { return Client(desktop, DRAG_SOURCE, offered); }
    std::string addressOf(std::string const& path) { return "file://" + (desktop.home() / path).string(); }
    bool exists(std::string const& path) { return std::filesystem::exists(desktop.home() / path); }

    /// Where it is once it has come to rest: lists scroll.
    static Place settled(Accessible const& item) {
        Place last;
        EXPECT_TRUE(waitFor([&] {
            auto const now = item.place();
            return now.width > 0 && now == std::exchange(last, now);
        }));
        return last;
    }
    /// In the first half of a row, where its icon and name are.
    Spot row(QString const& name) {
        auto const place = settled(program->tree().expect("list", "Files").expect("list item", name));
        return {place.x + place.width / 4, place.midY()};
    }
    /// The same at any time; where the row was last once it is gone.
    std::function<Spot()> over(QString const& name) {
        return [this, name, last = row(name)]() mutable {
            auto const place = program->tree().find("list", "Files").find("list item", name).place();
            return place.width > 0 ? last = Spot{place.x + place.width / 4, place.midY()} : last;
        };
    }
    bool shows(QString const& name) {
        return static_cast<bool>(program->tree().find("list", "Files").find("list item", name));
    }
    /// Somewhere below the rows.
    Spot belowRows() {
        auto const place = settled(program->tree().expect("list", "Files"));
        return {place.midX(), place.maxY() - 40};
    }
};

TEST_F(Drag, FilesAreMovedInAndCopiedWithTheKey) {
    desktop.makeFolder("Work");
    desktop.write("first.txt", "1");
    desktop.write("second.txt", "2");
    start();
    auto const place = belowRows();
    {
        auto client = source({"text/uri-list", addressOf("first.txt")});
        hand.press(client.middle());
        ASSERT_TRUE(hand.hover(place, [&] { return client.says("action move"); })) << client.said();
        hand.release();
        EXPECT_TRUE(waitFor([&] { return exists("Work/first.txt") && !exists("first.txt"); }));
        EXPECT_TRUE(waitFor([&] { return client.says("ended move"); })) << client.said();
    }
    auto client = source({"text/uri-list", addressOf("second.txt")});
    hand.press(client.middle());
    ASSERT_TRUE(hand.hover(place, [&] { return client.says("action move"); })) << client.said();
    display.keyDown("Control_L");
    EXPECT_TRUE(hand.hover(place, [&] { return client.says("action copy"); })) << client.said();
    hand.release();
    EXPECT_TRUE(waitFor([&] { return exists("Work/second.txt"); }));
    display.keyUp("Control_L");
    EXPECT_TRUE(exists("second.txt"));
    program->tree().expect("list item", "second.txt");
}

TEST_F(Drag, RestingOnFoldersOpensThemTwoDeep) {
    // No folder lies where the one before was opened, for it would open as well.
    desktop.makeFolder("Work/above");
    desktop.write("Work/outer/inner/found.txt");
    desktop.write("file.txt");
    start();
    auto client = source({"text/uri-list", addressOf("file.txt")});
    hand.press(client.middle());
    ASSERT_TRUE(hand.hover(over("outer"), [&] { return shows("inner"); })) << client.said();
    ASSERT_TRUE(hand.hover(over("inner"), [&] { return shows("found.txt"); })) << client.said();
    hand.moveTo(belowRows());
    hand.release();
    EXPECT_TRUE(waitFor([&] { return exists("Work/outer/inner/file.txt") && !exists("file.txt"); }))
        << client.said();
}

TEST_F(Drag, RecentsTakeNothing) {
    desktop.makeFolder("Work/inside");
    desktop.write("file.txt");
    start();
    program->tree().expect("list item", "inside");
    auto const list = belowRows();
    auto const recents = program->tree().expect("push button", "Recents").place();
    display.click(recents.midX(), recents.midY());
    ASSERT_TRUE(program->tree().waitUntilGone("list item", "inside"));
    auto const home =
        program->tree().expect("push button", QString::fromStdString(desktop.home().filename())).place();
    auto client = source({"text/uri-list", addressOf("file.txt")});
    hand.press(client.middle());
    ASSERT_TRUE(hand.hover({home.midX(), home.midY()}, [&] { return client.says("action move"); }))
        << client.said();
    client.forget();
    EXPECT_TRUE(hand.hover(list, [&] { return client.says("action none"); })) << client.said();
    hand.release();
    EXPECT_TRUE(waitFor([&] { return client.says("ended none"); }));
    EXPECT_TRUE(exists("file.txt"));
}

TEST_F(Drag, TextBecomesAFile) {
    desktop.makeFolder("Work");
    start();
    auto const place = belowRows();
    auto client = source({"text/plain", "Grüße", "text/html", "<b>Grüße</b>"});
    hand.press(client.middle());
    ASSERT_TRUE(hand.hover(place, [&] { return client.says("action copy"); })) << client.said();
    hand.release();
    std::filesystem::path saved;
    EXPECT_TRUE(waitFor([&] {
        for (auto const& item : std::filesystem::directory_iterator(desktop.home() / "Work"))
            if (item.path().filename().string().starts_with("Snippet-"))
                saved = item.path();
        return !saved.empty();
    }));
    EXPECT_EQ(contentsOf(saved), "<meta charset=\"utf-8\">\n<b>Grüße</b>");
}

TEST_F(Drag, OutToAnotherProgramClosesThePopoverAndWithinItDoesNot) {
    desktop.write("Work/a file.txt");
    desktop.write("Work/folder/found.txt");
    std::filesystem::path const defaults = desktop.environment().at("XDG_CONFIG_HOME") + "/taliro";
    std::filesystem::create_directories(defaults);
    std::ofstream(defaults / "defaults.plist")
        << "<?xml version=\"1.0\"?>\n<plist "
           "version=\"1.0\"><dict><key>popoverMode</key><true/></dict></plist>\n";
    start();
    display.expectWindow("popover");
    Client target(desktop, DRAG_TARGET, {"copy"});

    hand.press(row("a file.txt"));
    ASSERT_TRUE(hand.hover(over("folder"), [&] { return shows("found.txt"); }));
    hand.moveTo(belowRows());
    hand.release();
    EXPECT_TRUE(waitFor([&] { return exists("Work/folder/a file.txt"); }));
    EXPECT_TRUE(display.window("popover"));

    hand.press(row("a file.txt"));
    ASSERT_TRUE(hand.hover(target.middle(), [&] { return target.says("entered"); })) << target.said();
    hand.release();
    EXPECT_TRUE(waitFor([&] { return target.says("dropped"); })) << target.said();
    EXPECT_TRUE(target.says("text/uri-list " + addressOf("Work/folder/a%2520file.txt") + "%0D%0A"))
        << target.said();
    EXPECT_TRUE(display.waitUntilGone("popover"));
}

} // namespace
} // namespace taliro::testing
