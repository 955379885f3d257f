#include "browsing/Rows.h"

#include "browsing/ArrowKeyNav.h"
#include "browsing/DirectoryLoader.h"
#include "browsing/SmartFolders.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

struct RowsTest : ::testing::Test {
    FakePlatform fake;
    Url home = fake.fileManager.addFolder("/home/mira");
    BrowserState state{home};
    DirectoryWatcher watcher{fake.platform};
    Published<std::vector<FileEntry>> recents;
    Rows rows{fake.platform, state, watcher, recents};

    RowsTest() {
        for (auto const* name : {"a.txt", "b.txt", "c.pdf"})
            fake.fileManager.addFile("/home/mira/" + std::string(name));
        watcher.watch(home);
    }
    std::string shown() {
        std::string text;
        for (auto const& entry : rows.current().entries())
            text += entry.name() + " ";
        return text;
    }
    void change(std::vector<std::string> const& names) {
        fake.directoryEvents.change("/home/mira", names);
        fake.mainQueue.advance(100ms);
    }
};

TEST_F(RowsTest, SearchAndOrderReadNothingAgain) {
    EXPECT_EQ(shown(), "a.txt b.txt c.pdf ");
    state.searchText = "TXT";
    EXPECT_EQ(shown(), "a.txt b.txt ");
    state.sortAscending = false;
    EXPECT_EQ(shown(), "b.txt a.txt ");
    state.searchText = "";
    EXPECT_EQ(shown(), "c.pdf b.txt a.txt ");
    EXPECT_EQ(fake.fileManager.listings, 1);
}

TEST_F(RowsTest, AChangeReadsTheChangedItemsOnly) {
    shown();
    fake.fileManager.addFile("/home/mira/bb.txt");
    fake.fileManager.tree.erase("/home/mira/a.txt");
    fake.fileManager.addFile("/home/mira/.secret");
    change({"bb.txt", "a.txt", ".secret"});
    EXPECT_EQ(shown(), "b.txt bb.txt c.pdf ");
    EXPECT_EQ(fake.fileManager.listings, 1);

    fake.fileManager.addFile("/home/mira/d.txt"); // An event that says no names: all may have changed.
    fake.directoryEvents.change("/home/mira");
    EXPECT_EQ(shown(), "b.txt bb.txt c.pdf d.txt ");
    EXPECT_EQ(fake.fileManager.listings, 2);
}

TEST_F(RowsTest, AnAnnouncedChangeShowsAtOnceAndCostsWhatChanged) {
    shown();
    auto const announce = [&](std::string const& name) {
        fake.fileManager.addFile("/home/mira/" + name);
        fake.directoryEvents.pending["/home/mira"] = {{name}};
        NotificationCenter::standard().post(taliroFolderDidChange, Url::file("/home/mira"));
    };
    announce("made.txt");
    EXPECT_EQ(shown(), "a.txt b.txt c.pdf made.txt ");
    EXPECT_EQ(fake.fileManager.listings, 1);

    watcher.stop();
    fake.directoryEvents.fail = true;
    watcher.watch(home);
    EXPECT_EQ(fake.fileManager.listings, 1);
    announce("more.txt");
    EXPECT_EQ(shown(), "a.txt b.txt c.pdf made.txt more.txt ") << "where the system tells nothing";
    EXPECT_EQ(fake.fileManager.listings, 2);
}

TEST_F(RowsTest, ManySmallChangesNeverShowStaleRows) {
    shown();
    for (int i = 0; i < 2000; ++i) {
        auto const name = "f" + std::to_string(i % 7);
        if (i % 3 == 0)
            fake.fileManager.tree.erase("/home/mira/" + name);
        else
            fake.fileManager.addFile("/home/mira/" + name, {.isRegular = true, .size = i});
        change({name});
        if (i % 50 == 0) { // Looked at rarely, so that what is remembered of changes runs over.
            auto const kept = rows.current().entries();
            EXPECT_EQ(kept, DirectoryLoader::load(fake.platform, home, "", SortKey::name, true).entries());
        }
    }
}

TEST_F(RowsTest, RecentsAreSearchedButNotSorted) {
    recents = std::vector<FileEntry>{
        {.url = Url::file("/z.txt")}, {.url = Url::file("/a.txt")}, {.url = Url::file("/m.pdf")}};
    state.navigate(SmartFolders::recents());
    state.sortAscending = false;
    EXPECT_EQ(shown(), "z.txt a.txt m.pdf ");
    state.searchText = " Txt";
    EXPECT_EQ(shown(), "z.txt a.txt ");
    EXPECT_EQ(fake.fileManager.listings, 0);
}

TEST(ItemCountLabel, KnowsTheSingular) {
    EXPECT_EQ(itemCountLabel(0), "0 items");
    EXPECT_EQ(itemCountLabel(1), "1 item");
    EXPECT_EQ(itemCountLabel(2), "2 items");
}

RowList rowsCalled(std::vector<std::string> const& names) {
    std::vector<FileEntry> entries;
    for (auto const& name : names)
        entries.push_back({.url = Url::file("/f/" + name)});
    return RowList(std::move(entries));
}

TEST(ArrowKeyNav, StepsWithinTheRows) {
    auto const rows = rowsCalled({"a", "b", "c"});
    struct Case {
        char const* current;
        int delta;
        char const* expected;
    };
    for (auto const& [current, delta, expected] :
         {Case{"b", 1, "c"}, Case{"b", -1, "a"}, Case{"c", 1, "c"}, Case{"a", -1, "a"}, Case{"a", 7, "c"},
          Case{"", 1, "a"}, Case{"", -1, "c"}, Case{"gone", 3, "a"}, Case{"gone", -3, "c"}}) {
        auto const from = *current ? std::optional(Url::file("/f/" + std::string(current))) : std::nullopt;
        EXPECT_EQ(ArrowKeyNav::step(rows, from, delta), Url::file("/f/" + std::string(expected)))
            << current << delta;
    }
    EXPECT_EQ(ArrowKeyNav::step(RowList(), std::nullopt, 1), std::nullopt);
}

TEST(TypeAhead, FindsByTheLettersTypedWithoutAPause) {
    auto const rows = rowsCalled({"Apple", "banana", "Bread", "brie", "Zoo"});
    TypeAhead typeAhead;
    auto now = 0ms;
    std::optional<Url> current;
    auto const type = [&](char const* text, std::chrono::milliseconds pause) {
        now += pause;
        if (auto const found = typeAhead.type(text, now, rows, current))
            current = found;
        return current->lastPathComponent();
    };
    EXPECT_EQ(type("b", 0ms), "banana");
    EXPECT_EQ(type("r", 300ms), "Bread");
    EXPECT_EQ(type("i", 300ms), "brie");
    EXPECT_EQ(type("B", 2000ms), "banana") << "after a pause a new beginning, from the next row on and round";
    EXPECT_EQ(type("b", 200ms), "Bread") << "the same letter again goes on";
    EXPECT_EQ(type("b", 200ms), "brie");
    EXPECT_EQ(type("x", 2000ms), "brie") << "what nothing begins with changes nothing";
}

} // namespace
} // namespace taliro::testing
