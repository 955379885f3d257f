#include "browsing/RecentsStore.h"

#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

struct RecentsStoreTest : ::testing::Test {
    FakePlatform desktop;
    Date const now = std::chrono::sys_days(std::chrono::year(2026) / 11 / 23);
    RecentsStore store{desktop.platform, now};

    void result(std::string const& path) { desktop.metadataQuery.items.push_back({path, std::nullopt, now}); }
    std::vector<std::string> paths() const {
        std::vector<std::string> found;
        for (auto const& entry : store.entries.get())
            found.push_back(entry.url.path());
        return found;
    }
};

TEST_F(RecentsStoreTest, StartsTheQueryOnceForTheLastYearsChanges) {
    EXPECT_FALSE(store.isActive);
    store.start();
    store.start();
    EXPECT_TRUE(store.isActive);
    EXPECT_EQ(desktop.metadataQuery.starts, 1);
    EXPECT_EQ(now - desktop.metadataQuery.definition.changedSince, 365 * 24h);
}

TEST_F(RecentsStoreTest, KeepsTheQuerysOrderAndLeavesOutWhatIsNotTheUsers) {
    struct Case {
        std::string path;
        bool isFolder;
        bool isListed;
    };
    Case const cases[]{
        {"/home/mira/b.txt", false, true},
        {"/home/mira/Library/Caches/used.db", false, false},
        {"/home/mira/Documents/Library/a.txt", false, true},
        {"/home/mira/Library.txt", false, true},
        {"/home/mira/.Trash/gone.txt", false, false},
        {"/media/stick/.Trash/gone.txt", false, false},
        {"/home/mira/.profile", false, false},
        {"/home/mira/.config/notes.txt", false, true},
        {"/home/mira/Pictures", true, false},
        {"/home/mira/Applications/Chess.app", true, true},
        {"relative.txt", false, false},
        {"", false, false},
        {"/home/mira/a.txt", false, true},
    };
    std::vector<std::string> expected;
    for (auto const& item : cases) {
        if (item.isFolder)
            desktop.fileManager.addFolder(item.path, {.size = 4096});
        else
            desktop.fileManager.addFile(item.path);
        result(item.path);
        if (item.isListed)
            expected.push_back(item.path);
    }
    store.start();
    desktop.metadataQuery.onResults();
    EXPECT_EQ(paths(), expected);
    EXPECT_EQ(desktop.metadataQuery.disabled, 0);

    auto const bundle = std::ranges::find(store.entries.get(), true, &FileEntry::isDirectory);
    ASSERT_NE(bundle, store.entries->end());
    EXPECT_EQ(bundle->url, Url::file("/home/mira/Applications/Chess.app/"));
}

TEST_F(RecentsStoreTest, ReadsWhatIsKnownAndListsTheRestBare) {
    desktop.fileManager.addFile("/home/mira/plan.txt",
                                {.isRegular = true, .size = 12, .modified = now, .added = now - 1h});
    result("/home/mira/plan.txt");
    result("/home/mira/vanished.txt");
    store.start();
    desktop.metadataQuery.onResults();
    std::vector<FileEntry> const expected{
        {Url::file("/home/mira/plan.txt"), false, now, now - 1h, 12, "txt document"},
        {Url::file("/home/mira/vanished.txt"), false, std::nullopt, std::nullopt, 0, std::nullopt},
    };
    EXPECT_EQ(store.entries.get(), expected);
}

TEST_F(RecentsStoreTest, PublishesAHundredAndReplacesThemAsAWhole) {
    for (int i = 0; i < 500; ++i) {
        auto const path = "/home/mira/" + std::to_string(i) + ".txt";
        desktop.fileManager.addFile(path);
        result(path);
    }
    store.start();
    desktop.metadataQuery.onResults();
    ASSERT_EQ(store.entries->size(), 100u);
    EXPECT_EQ(store.entries->back().name(), "99.txt");

    std::ranges::rotate(desktop.metadataQuery.items, desktop.metadataQuery.items.begin() + 400);
    desktop.metadataQuery.onResults();
    EXPECT_EQ(store.entries->front().name(), "400.txt");
}

} // namespace
} // namespace taliro::testing
