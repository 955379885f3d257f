#include "sidebar/FavoritesStore.h"

#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

struct FavoritesStoreTest : ::testing::Test {
    FakePlatform desktop;
    std::optional<FavoritesStore> store;

    void makeFolders(std::initializer_list<char const*> paths) {
        for (auto const* path : paths)
            desktop.fileManager.addFolder(path);
    }
    FavoritesStore& construct() { return store.emplace(desktop.platform); }
    std::vector<std::string> ids() const {
        std::vector<std::string> found;
        for (auto const& item : store->items.get())
            found.push_back(item.id);
        return found;
    }
    using Ids = std::vector<std::string>;
};

TEST_F(FavoritesStoreTest, SeedsTheStandardFoldersThatExistOnce) {
    makeFolders({"/home/mira/Desktop", "/home/mira/Downloads", "/Applications"});
    construct();
    std::vector<SidebarItem> const expected{
        {"/recents", "Recents", "clock", *Url::parse("taliro:///recents")},
        {"/home/mira/Desktop", "Desktop", "menubar.dock.rectangle", Url::file("/home/mira/Desktop/")},
        {"/home/mira/Downloads", "Downloads", "arrow.down.circle", Url::file("/home/mira/Downloads/")},
        {"/home/mira", "mira", "house", Url::file("/home/mira/")},
        {"/Applications", "Applications", "square.grid.3x3", Url::file("/Applications/")},
    };
    EXPECT_EQ(store->items.get(), expected);
    EXPECT_TRUE(desktop.userDefaults.boolean("userFavoritesSeeded"));

    makeFolders({"/home/mira/Documents"});
    desktop.userDefaults.set("userFavoriteBookmarks", {PropertyValue::List{}});
    construct();
    EXPECT_EQ(ids(), Ids{"/recents"});
}

TEST_F(FavoritesStoreTest, FollowsTheUsersOwnFolderNames) {
    makeFolders({"/home/mira/Dokumente", "/home/mira/Documents", "/home/mira/Desktop", "/data/Musik"});
    desktop.standardFolders.folders = {{StandardFolder::documents, Url::file("/home/mira/Dokumente/")},
                                       {StandardFolder::music, Url::file("/data/Musik/")}};
    construct();
    EXPECT_EQ(ids(), (Ids{"/recents", "/home/mira/Desktop", "/home/mira/Dokumente", "/home/mira"}));

    std::pair<char const*, char const*> const symbols[]{
        {"/home/mira", "house"},
        {"/home/mira/Dokumente", "doc"},
        {"/home/mira/Documents", "doc"},
        {"/home/mira/Movies", "film"},
        {"/home/mira/Music", "music.note"},
        {"/data/Musik", "music.note"},
        {"/home/mira/Pictures", "photo"},
        {"/home/mira/Public", "person.crop.square"},
        {"/Applications", "square.grid.3x3"},
        {"/applications", "folder"},
        {"/home/mira/Music/Jazz", "folder"},
    };
    for (auto const& [path, symbol] : symbols)
        EXPECT_EQ(store->symbol(Url::file(path, true)), symbol) << path;
}

TEST_F(FavoritesStoreTest, RemovesByUrlAndDropsWhatNoLongerResolves) {
    makeFolders({"/home/mira/Desktop", "/home/mira/Documents", "/home/mira/Downloads"});
    construct();
    auto const stored = [&] {
        return desktop.userDefaults.object("userFavoriteBookmarks")->as<PropertyValue::List>()->size();
    };
    store->removeFavorite(store->items->front());
    EXPECT_EQ(stored(), 4u);

    desktop.fileManager.tree.erase("/home/mira/Desktop");
    desktop.fileManager.addFolder("/home/mira/Papers");
    desktop.bookmarks.renamed["/home/mira/Documents"] = "/home/mira/Papers";
    store->removeFavorite(
        {.id = "/home/mira/Downloads", .title = "", .symbol = "", .url = Url::file("/home/mira/Downloads/")});
    EXPECT_EQ(ids(), (Ids{"/recents", "/home/mira/Papers", "/home/mira"}));
    EXPECT_EQ(stored(), 2u);
}

TEST_F(FavoritesStoreTest, TakesAMalformedListForAnEmptyOne) {
    desktop.userDefaults.setBoolean("userFavoritesSeeded", true);
    PropertyValue const good{PropertyValue::Data{'/'}};
    std::pair<PropertyValue, std::size_t> const cases[]{
        {{std::string("text")}, 1},
        {{PropertyValue::List{good, {std::string("text")}}}, 1},
        {{PropertyValue::List{{PropertyValue::Data{}}, good, {PropertyValue::Data{'x', 0, 0xff}}}}, 2},
    };
    for (auto const& [value, rows] : cases) {
        desktop.userDefaults.set("userFavoriteBookmarks", value);
        construct();
        EXPECT_EQ(ids().size(), rows);
    }
}

TEST_F(FavoritesStoreTest, ShowsItsOwnListWhereTheFileManagersCantBeRead) {
    makeFolders({"/home/mira/Desktop", "/projects"});
    construct();
    store->setSyncWithFinder(true);
    EXPECT_TRUE(store->finderAccessDenied);
    EXPECT_EQ(ids(), (Ids{"/recents", "/home/mira/Desktop", "/home/mira"}));
    EXPECT_TRUE(desktop.userDefaults.boolean("syncFavoritesWithFinder"));

    // The list appears while the program runs.
    desktop.desktopPlaces.places = {{{"Projects", Url::file("/projects")}}};
    desktop.desktopPlaces.observers.notify();
    EXPECT_FALSE(store->finderAccessDenied);
    EXPECT_EQ(store->items->at(1), (SidebarItem{"/projects", "Projects", "folder", Url::file("/projects/")}));

    store->removeFavorite(store->items->at(1));
    EXPECT_EQ(ids(), (Ids{"/recents", "/projects"}));

    // Readable, and nothing in it.
    desktop.desktopPlaces.places->clear();
    desktop.directoryEvents.change("/home/mira/Library/Application Support/com.apple.sharedfilelist");
    EXPECT_FALSE(store->finderAccessDenied);
    EXPECT_EQ(ids(), Ids{"/recents"});

    store->setSyncWithFinder(false);
    EXPECT_EQ(ids(), (Ids{"/recents", "/home/mira/Desktop", "/home/mira"}));
    desktop.desktopPlaces.places = {{{"Projects", Url::file("/projects")}}};
    desktop.desktopPlaces.observers.notify();
    EXPECT_EQ(ids().size(), 3u);
}

} // namespace
} // namespace taliro::testing
