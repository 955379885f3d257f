#include "browsing/BrowserState.h"

#include "browsing/DirectoryWatcher.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

Url place(char const* name) {
    return Url::file("/" + std::string(name), true);
}

struct BrowserStateTest : ::testing::Test {
    BrowserState state{place("home")};
    std::vector<Url> rows{place("a"), place("b"), place("c"), place("d"), place("e")};

    std::string selected() {
        std::string text;
        for (auto const& row : rows)
            if (state.selectedURLs->contains(row))
                text += row.lastPathComponent();
        return text + ":" + (state.selection.get() ? state.selection->value().lastPathComponent() : "");
    }
};

TEST_F(BrowserStateTest, HistoryIsKeptWholeAndNavigatingForgetsTheForwardHalf) {
    for (auto const* name : {"A", "B", "A", "B"})
        state.navigate(place(name));
    EXPECT_EQ(state.backStack(), (std::vector{place("home"), place("A"), place("B"), place("A")}));
    state.goBack();
    state.goBack();
    EXPECT_EQ(state.currentURL.get(), place("B"));
    EXPECT_EQ(state.forwardStack(), (std::vector{place("B"), place("A")})) << "the last is next";
    state.goForward();
    EXPECT_EQ(state.currentURL.get(), place("A"));
    state.navigate(place("D"));
    EXPECT_TRUE(state.forwardStack().empty());
}

TEST_F(BrowserStateTest, GoingNowhereChangesNothing) {
    state.selectSingle(place("a"));
    state.navigate(place("home"));
    state.goBack();
    state.goForward();
    EXPECT_TRUE(state.backStack().empty());
    EXPECT_EQ(selected(), "a:a");
    state.navigate(Url::file("/home")); // Without the slash it is another place.
    EXPECT_EQ(selected(), ":");
    EXPECT_EQ(state.backStack().size(), 1u);
}

TEST_F(BrowserStateTest, RangesRunFromThePrimaryItemAndMoveIt) {
    state.selectSingle(place("c"));
    state.extendSelection(place("e"), rows);
    EXPECT_EQ(selected(), "cde:e");
    state.extendSelection(place("a"), rows);
    EXPECT_EQ(selected(), "abcde:a");
    state.toggleSelection(place("c"));
    EXPECT_EQ(selected(), "abde:a");
    state.toggleSelection(place("c"));
    state.extendSelection(place("d"), rows);
    EXPECT_EQ(selected(), "cd:d") << "what lies outside the range is dropped";
    state.extendSelection(place("x"), rows);
    EXPECT_EQ(selected(), ":x") << "a row that isn't shown is selected alone";
    state.extendSelection(place("b"), rows);
    EXPECT_EQ(selected(), "b:b") << "no range from one that isn't shown";
}

TEST_F(BrowserStateTest, TogglingThePrimaryItemAwayLeavesAnotherOrNone) {
    for (auto const* name : {"a", "b", "c"})
        state.toggleSelection(place(name));
    state.toggleSelection(place("c"));
    EXPECT_TRUE(selected() == "ab:a" || selected() == "ab:b") << selected();
    auto const primary = *state.selection.get();
    state.toggleSelection(primary);
    state.toggleSelection(*state.selection.get());
    EXPECT_EQ(selected(), ":");
}

struct DirectoryWatcherTest : ::testing::Test {
    FakePlatform fake;
    DirectoryWatcher watcher{fake.platform};
    void event() { fake.directoryEvents.change("/a", std::vector<std::string>{"x"}); }
};

TEST_F(DirectoryWatcherTest, ABurstCountsAtItsStartAndWhenItsWindowCloses) {
    watcher.watch(place("a"));
    event();
    EXPECT_EQ(watcher.tick.get(), 1) << "the first is told at once";
    for (int i = 0; i < 9; ++i) {
        fake.mainQueue.advance(1ms);
        event();
    }
    fake.mainQueue.advance(100ms);
    EXPECT_EQ(watcher.tick.get(), 2);
    event();
    fake.mainQueue.advance(50ms);
    event();
    fake.mainQueue.advance(50ms);
    EXPECT_EQ(watcher.tick.get(), 4) << "two windows";
}

TEST_F(DirectoryWatcherTest, AnnouncedChangesCountForTheSameFolderHoweverItIsWritten) {
    watcher.watch(Url::file("/a/b"));
    auto& center = NotificationCenter::standard();
    center.post(taliroFolderDidChange, Url::file("/a/b/"));
    center.post(taliroFolderDidChange, Url::file("/a/./x/../b"));
    EXPECT_EQ(watcher.tick.get(), 2) << "each, without a window";
    center.post(taliroFolderDidChange, Url::file("/a"));
    center.post(taliroFolderDidChange, std::string("/a/b"));
    watcher.stop();
    center.post(taliroFolderDidChange, Url::file("/a/b"));
    EXPECT_EQ(watcher.tick.get(), 2);
}

TEST_F(DirectoryWatcherTest, WatchesOneFolderAndOpensItOnce) {
    watcher.watch(place("a"));
    auto const watches = fake.directoryEvents.watches;
    watcher.watch(place("a"));
    EXPECT_EQ(fake.directoryEvents.watches, watches);
    watcher.watch(place("b"));
    event();
    EXPECT_EQ(watcher.tick.get(), 0) << "that was the folder watched before";
    watcher.stop();
    EXPECT_TRUE(fake.directoryEvents.sources.empty());

    fake.directoryEvents.fail = true;
    watcher.watch(place("c"));
    EXPECT_FALSE(watcher.isLive());
    NotificationCenter::standard().post(taliroFolderDidChange, place("c"));
    EXPECT_EQ(watcher.tick.get(), 1) << "announced changes count all the same";
}

TEST_F(DirectoryWatcherTest, FollowsThePathWhereAFolderGoesAndAnotherComes) {
    auto& system = fake.directoryEvents;
    watcher.watch(Url::file("/a/b/c"));
    struct {
        char const* what;
        std::set<std::string> missing;
        int identity; ///< of /a/b/c
        char const* toldBy;
        DirectoryEvents::Changed names;
        int tick;
        bool isLive;
    } const steps[]{
        {"a neighbour", {}, 0, "/a/b", {{"other"}}, 0, true},
        {"its attributes", {}, 0, "/a/b", {{"c"}}, 0, true},
        {"gone, though its own watch is silent", {"/a/b/c"}, 0, "/a/b", {{"c"}}, 1, false},
        {"its parent goes, too", {"/a/b", "/a/b/c"}, 0, "/a/b", std::nullopt, 1, false},
        {"a neighbour of the parent", {"/a/b", "/a/b/c"}, 0, "/a", {{"bb"}}, 1, false},
        {"the parent is back", {"/a/b/c"}, 0, "/a", {{"b"}}, 1, false},
        {"the folder is back", {}, 1, "/a/b", {{"c"}}, 2, true},
        {"another takes its place at once", {}, 2, "/a/b", {{"c"}}, 3, true},
    };
    for (auto const& step : steps) {
        system.missing = step.missing;
        system.identities["/a/b/c"] = step.identity;
        auto const before = watcher.tick.get();
        system.change(step.toldBy, step.names);
        fake.mainQueue.advance(100ms);
        EXPECT_EQ(watcher.tick.get(), step.tick) << step.what;
        EXPECT_EQ(watcher.isLive(), step.isLive) << step.what;
        if (watcher.tick.get() > before) {
            EXPECT_EQ(watcher.changedSince(before), std::nullopt) << step.what;
        }
    }
}

TEST_F(DirectoryWatcherTest, GoingAwayWithinAWindowIsHarmless) {
    {
        DirectoryWatcher brief(fake.platform);
        brief.watch(place("a"));
        event();
        event();
    }
    fake.mainQueue.advance(100ms);
    NotificationCenter::standard().post(taliroFolderDidChange, place("a"));
}

} // namespace
} // namespace taliro::testing
