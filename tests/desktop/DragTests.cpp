// Files in and out of the browser, by real drags between two programs.

#include "desktop/Desktop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

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
    QString list = "Files"; ///< the list that is meant

    void start(std::string const& folder = "Work") {
        program = std::make_unique<Program>(desktop, std::vector{(desktop.home() / folder).string()});
        // One list, in which a resting drag opens folders and closes none.
        show("List", "Files");
    }
    /// Changes the view to one of "Icons", "List", "Columns"; `shown` is the list to go on with.
    void show(QString const& view, QString const& shown) {
        auto const button = program->tree().expect("radio button", view).place();
        display.click(button.midX(), button.midY());
        list = shown;
        program->tree().expect("list", list);
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
        auto const place = settled(program->tree().expect("list", list).expect("list item", name));
        return {place.x + place.width / 4, place.midY()};
    }
    /// The same at any time; where the row was last once it is gone.
    std::function<Spot()> over(QString const& name) {
        return [this, name, last = row(name)]() mutable {
            auto const place = program->tree().find("list", list).find("list item", name).place();
            return place.width > 0 ? last = Spot{place.x + place.width / 4, place.midY()} : last;
        };
    }
    bool shows(QString const& name) {
        return static_cast<bool>(program->tree().find("list", list).find("list item", name));
    }
    /// In the middle of something that has come to rest.
    Spot on(QString const& role, QString const& name) {
        auto const place = settled(program->tree().expect(role, name));
        return {place.midX(), place.midY()};
    }
    QString homeName() { return QString::fromStdString(desktop.home().filename()); }
    /// Presses, and goes on once the other program drags: no hand is quicker.
    void pickUp(Client& client) {
        client.forget();
        hand.press(client.middle());
        EXPECT_TRUE(hand.hover(client.middle(), [&] { return client.says("began"); })) << client.said();
    }
    /// Drags to `to`, and lets go once the other program knows what would become of it.
    void dragOnto(Client& client, std::string const& operation, Spot to) {
        pickUp(client);
        EXPECT_TRUE(hand.hover(to, [&] { return client.says("action " + operation); })) << client.said();
        hand.release();
        EXPECT_TRUE(waitFor([&] { return client.says("ended " + operation); })) << client.said();
    }
    /// Somewhere below the rows.
    Spot belowRows() {
        auto const place = settled(program->tree().expect("list", list));
        return {place.midX(), place.maxY() - 40};
    }
};

TEST_F(Drag, FilesAreMovedInAndCopiedWithTheKey) {
    desktop.makeFolder("Work");
    std::string const odd = "odd \xFF\n%20";
    desktop.write(odd, "1");
    desktop.write("second.txt", "2");
    start();
    auto const place = belowRows();
    {
        auto client = source({"text/uri-list", addressOf("odd%20%FF%0A%2520")});
        dragOnto(client, "move", place);
        EXPECT_TRUE(waitFor([&] { return exists("Work/" + odd) && !exists(odd); }));
    }
    auto client = source({"text/uri-list", addressOf("second.txt")});
    pickUp(client);
    ASSERT_TRUE(hand.hover(place, [&] { return client.says("action move"); })) << client.said();
    display.keyDown("Control_L");
    EXPECT_TRUE(hand.hover(place, [&] { return client.says("action copy"); })) << client.said();
    hand.release();
    EXPECT_TRUE(waitFor([&] { return exists("Work/second.txt"); }));
    display.keyUp("Control_L");
    EXPECT_TRUE(exists("second.txt"));
    program->tree().expect("list item", "second.txt");
}

TEST_F(Drag, ALongCopyLeavesTheBrowserFreeAndNothingWhereItIsCancelled) {
    constexpr std::int64_t size = 6LL << 30;
    desktop.makeFolder("Work");
    auto const large = desktop.write("large");
    auto const file = ::open(large.c_str(), O_WRONLY);
    bool const hasRoom = std::filesystem::space(large).available > 3 * size;
    bool const isMade = hasRoom && ::fallocate(file, 0, 0, size) == 0;
    ::close(file);
    if (!isMade)
        GTEST_SKIP() << "There is no room here for a file that takes long to copy.";
    start();
    auto client = source({"text/uri-list", addressOf("large")});
    display.keyDown("Control_L");
    dragOnto(client, "copy", belowRows());
    display.keyUp("Control_L");
    auto const cancel = program->tree().expect("push button", "Cancel").place();
    show("Icons", "Files");
    program->tree().expect("push button", "Cancel");
    display.click(cancel.midX(), cancel.midY());
    EXPECT_TRUE(program->tree().waitUntilGone("push button", "Cancel"));
    EXPECT_TRUE(waitFor([&] { return std::filesystem::is_empty(desktop.home() / "Work"); }));
    EXPECT_EQ(std::filesystem::file_size(large), static_cast<std::uintmax_t>(size));
}

TEST_F(Drag, RestingOnFoldersOpensThemTwoDeep) {
    // No folder lies where the one before was opened, for it would open as well.
    desktop.makeFolder("Work/above");
    desktop.write("Work/outer/inner/found.txt");
    desktop.write("file.txt");
    start();
    auto client = source({"text/uri-list", addressOf("file.txt")});
    pickUp(client);
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
    pickUp(client);
    ASSERT_TRUE(hand.hover({home.midX(), home.midY()}, [&] { return client.says("action move"); }))
        << client.said();
    client.forget();
    EXPECT_TRUE(hand.hover(list, [&] { return client.says("action none"); })) << client.said();
    hand.release();
    EXPECT_TRUE(waitFor([&] { return client.says("ended none"); }));
    EXPECT_TRUE(exists("file.txt"));
}

TEST_F(Drag, HowLongItRestedDecidesWhereItFalls) {
    desktop.makeFolder("Work/folder");
    desktop.write("passing.txt");
    desktop.write("resting.txt");
    start();
    auto const folder = row("folder");
    {
        auto client = source({"text/uri-list", addressOf("passing.txt")});
        pickUp(client);
        ASSERT_TRUE(hand.hover(belowRows(), [&] { return client.says("action move"); })) << client.said();
        // A busy machine may be too slow over the folder: then it is entered anew.
        for (bool isQuick = false; !isQuick;) {
            hand.moveTo(belowRows());
            auto const entered = std::chrono::steady_clock::now();
            int trembled = 0;
            hand.hover(folder, [&] { return ++trembled > 10; });
            isQuick = std::chrono::steady_clock::now() - entered < std::chrono::milliseconds(400);
        }
        hand.release();
        EXPECT_TRUE(waitFor([&] { return exists("Work/passing.txt"); })) << client.said();
    }
    auto client = source({"text/uri-list", addressOf("resting.txt")});
    Spot const beside{belowRows().x, folder.y};
    auto const bare = display.colour(beside.x, beside.y);
    pickUp(client);
    ASSERT_TRUE(hand.hover(folder, [&] { return display.colour(beside.x, beside.y) != bare; }));
    hand.release();
    EXPECT_TRUE(waitFor([&] { return exists("Work/folder/resting.txt") && !exists("resting.txt"); }))
        << client.said();
}

TEST_F(Drag, PathAndSidebarOpenAndTheTrashRemembers) {
    desktop.makeFolder("Work/deep");
    std::filesystem::path const trash = desktop.environment().at("XDG_DATA_HOME") + "/Trash";
    std::filesystem::create_directories(trash / "files");
    std::ofstream(trash / "files/old.txt") << "old";
    start("Work/deep");
    struct Case {
        QString place;
        QString shown; ///< once it has sprung open
        std::filesystem::path folder;
    };
    Case const cases[] = {{"Work", "deep", desktop.home() / "Work"},
                          {homeName(), "Work", desktop.home()},
                          {"Trash", "old.txt", trash / "files"}};
    for (auto const& [place, shown, folder] : cases) {
        SCOPED_TRACE(place.toStdString());
        desktop.write("from/file.txt", "new");
        auto client = source({"text/uri-list", addressOf("from/file.txt")});
        pickUp(client);
        EXPECT_TRUE(hand.hover(on("push button", place), [&] { return shows(shown); })) << client.said();
        hand.release();
        EXPECT_TRUE(waitFor([&] { return !exists("from/file.txt"); })) << client.said();
        EXPECT_EQ(contentsOf(folder / "file.txt"), "new");
    }
    // One more of that name.
    desktop.write("from/file.txt", "newer");
    auto client = source({"text/uri-list", addressOf("from/file.txt")});
    dragOnto(client, "move", belowRows());
    EXPECT_TRUE(waitFor([&] { return !exists("from/file.txt"); }));
    EXPECT_EQ(contentsOf(trash / "files/file.txt"), "new");
    int notes = 0;
    for (auto const& note : std::filesystem::directory_iterator(trash / "info")) {
        ++notes;
        EXPECT_NE(contentsOf(note).find("\nPath=" + (desktop.home() / "from/file.txt").string() + "\n"),
                  std::string::npos)
            << contentsOf(note);
        EXPECT_TRUE(std::filesystem::exists(trash / "files" / note.path().stem()));
    }
    EXPECT_EQ(notes, 2);
}

TEST_F(Drag, PromisedFilesAreSavedByTheirProgram) {
    desktop.makeFolder("Work");
    start();
    auto const expectSaved = [&](std::function<Spot()> const& where, std::string const& file,
                                 QString const& shown) {
        SCOPED_TRACE(file);
        auto client = source({"--promise", "../re port.ods", "kept", "text/plain", "re port.ods"});
        pickUp(client);
        EXPECT_TRUE(hand.hover(where, [&] {
            return client.says("action copy") &&
                   (shown.isEmpty() || program->tree().find("list item", shown).isShowing());
        })) << client.said();
        hand.release();
        EXPECT_TRUE(waitFor([&] { return contentsOf(desktop.home() / file) == "kept"; })) << client.said();
    };
    auto const at = [](Spot spot) { return [spot] { return spot; }; };
    expectSaved(at(belowRows()), "Work/re port.ods", "");
    show("Columns", "Work");
    expectSaved(at(belowRows()), "Work/re port 2.ods", "");
    expectSaved(at(on("push button", homeName())), "re port.ods", "Work"); // once it has sprung open
}

TEST_F(Drag, TextBecomesAFile) {
    desktop.makeFolder("Work");
    start();
    auto const place = belowRows();
    auto client = source({"text/plain", "Grüße", "text/html", "<b>Grüße</b>"});
    pickUp(client);
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

TEST_F(Drag, AProgramThatMovesTakesTheFileItself) {
    desktop.write("Work/a file.txt", "all of it");
    std::filesystem::create_directories(desktop.home() / "Taken");
    start();
    Client target(desktop, DRAG_TARGET, {"move", (desktop.home() / "Taken").string()});

    hand.press(row("a file.txt"));
    ASSERT_TRUE(hand.hover(target.middle(), [&] { return target.says("entered"); })) << target.said();
    hand.release();
    EXPECT_TRUE(waitFor([&] { return target.says("dropped"); })) << target.said();
    EXPECT_FALSE(target.says("not moved"));
    EXPECT_TRUE(waitFor([&] { return !shows("a file.txt"); }));
    EXPECT_EQ(contentsOf(desktop.home() / "Taken/a file.txt"), "all of it");
    EXPECT_TRUE(display.window("panel"));
}

TEST_F(Drag, EveryViewGivesFilesAway) {
    desktop.write("Work/photo.ppm", "P6 2 1 255\n......");
    desktop.write("Work/text.txt");
    start();
    Client target(desktop, DRAG_TARGET, {"copy"});
    auto const expectDragged = [&](Spot from, std::string const& addresses) {
        target.forget();
        hand.press(from);
        EXPECT_TRUE(hand.hover(target.middle(), [&] { return target.says("entered"); }));
        hand.release();
        EXPECT_TRUE(waitFor([&] { return target.says("dropped"); }));
        EXPECT_TRUE(target.says("text/uri-list " + addresses)) << target.said();
    };
    auto const photo = addressOf("Work/photo.ppm") + "%0D%0A";
    auto const text = addressOf("Work/text.txt") + "%0D%0A";
    expectDragged(row("photo.ppm"), photo);
    EXPECT_TRUE(target.says("text/plain " + (desktop.home() / "Work/photo.ppm").string()));
    EXPECT_TRUE(target.says("x-special/gnome-copied-files copy%0A" + addressOf("Work/photo.ppm")));
    EXPECT_NE(target.said().find("\nimage/png %89PNG"), std::string::npos) << target.said();

    // Of several, the one under the pointer leads.
    display.click(row("photo.ppm").x, row("photo.ppm").y);
    display.keyDown("Control_L");
    display.click(row("text.txt").x, row("text.txt").y);
    display.keyUp("Control_L");
    program->tree().expect("", "Preview of text.txt");
    expectDragged(row("text.txt"), text + photo);
    expectDragged(on("", "Preview of text.txt"), text);

    show("Icons", "Files");
    expectDragged(on("list item", "photo.ppm"), photo + text);
    display.click(belowRows().x, belowRows().y);
    expectDragged(on("list item", "photo.ppm"), photo);
    show("Columns", "Work");
    expectDragged(row("text.txt"), text);
    std::uint32_t const narrow = 290;
    xcb_configure_window(display.connection(), display.expectWindow("panel").id, XCB_CONFIG_WINDOW_WIDTH,
                         &narrow);
    display.sync();
    EXPECT_TRUE(program->tree().waitUntilGone("", "Find in folder"));
    list = "Files";
    expectDragged(row("text.txt"), text);
}

} // namespace
} // namespace taliro::testing
