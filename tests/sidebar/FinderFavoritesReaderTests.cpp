#include "sidebar/FinderFavoritesReader.h"

#include "support/ArchiveWriter.h"
#include "support/FakePlatform.h"

namespace taliro::testing {
namespace {

using FinderFavoritesReader::Favorite;
using FinderFavoritesReader::Result;
using Reference = ArchiveWriter::Reference;

struct FinderFavoritesReaderTest : ::testing::Test {
    FakePlatform desktop;
    ArchiveWriter writer;
    Result const none;

    FinderFavoritesReaderTest() {
        desktop.fileManager.addFolder("/projects");
        desktop.fileManager.addFolder("/music");
        desktop.fileManager.addFile("/letter.txt");
    }
    void store(std::string const& generation, std::string const& bytes) {
        desktop.fileManager.contentsOf["/home/mira/Library/Application Support/com.apple.sharedfilelist/"
                                       "com.apple.LSSharedFileList.FavoriteItems." +
                                       generation] = bytes;
    }
    Reference item(std::string const& name, Reference bookmark) {
        return writer.dictionary(
            {{writer.text("Name"), writer.text(name)}, {writer.text("Bookmark"), bookmark}});
    }
    Reference rootWith(Reference items) { return writer.dictionary({{writer.text("items"), items}}); }
    Result read(PropertyValue list) {
        desktop.propertyLists.lists["list"] = std::move(list);
        store("sfl4", "list");
        return FinderFavoritesReader::read(desktop.platform);
    }
    Result readItems(std::vector<Reference> const& items) {
        return read(writer.finish(rootWith(writer.array(items, "NSMutableArray"))));
    }
};

TEST_F(FinderFavoritesReaderTest, ListsTheFoldersInOrderUnderTheirDisplayNames) {
    desktop.standardFolders.localizedNames["/music"] = "Musik";
    auto const result = readItems({
        item("Recents", writer.data("taliro:///recents")),
        item("The song folder", writer.data("/music")),
        item("A document", writer.data("/letter.txt")),
        item("Gone", writer.data("/gone")),
        writer.dictionary({{writer.text("Name"), writer.text("No bookmark")}}),
        writer.dictionary({{writer.text("Bookmark"), writer.text("/projects")}}),
        writer.dictionary({{writer.text("Name"), writer.data("Recents")},
                           {writer.text("Bookmark"), writer.data("/projects")}},
                          "NSMutableDictionary"),
    });
    EXPECT_EQ(result,
              (Result{{{"Musik", Url::file("/music/")}, {"projects", Url::file("/projects/")}}, true}));
}

TEST_F(FinderFavoritesReaderTest, TellsAListOfRecentsAloneFromNone) {
    EXPECT_EQ(readItems({item("Recents", writer.data("taliro:///recents"))}), (Result{{}, true}));
    EXPECT_EQ(readItems({item("recents", writer.data("taliro:///recents"))}), none);
}

TEST_F(FinderFavoritesReaderTest, TakesTheNewestGenerationThatCanBeRead) {
    desktop.propertyLists.lists["old"] =
        writer.finish(rootWith(writer.array({item("Work", writer.data("/projects"))})));
    desktop.propertyLists.lists["newer"] =
        writer.finish(rootWith(writer.array({item("Music", writer.data("/music"))})));
    store("sfl2", "old");
    EXPECT_EQ(FinderFavoritesReader::read(desktop.platform).favorites.at(0).name, "projects");
    store("sfl3", "newer");
    EXPECT_EQ(FinderFavoritesReader::read(desktop.platform).favorites.at(0).name, "music");
    // A readable file counts, whatever it holds.
    desktop.desktopPlaces.places = {{{std::nullopt, Url::file("/projects")}}};
    store("sfl4", "no list at all");
    EXPECT_EQ(FinderFavoritesReader::read(desktop.platform), none);
}

TEST_F(FinderFavoritesReaderTest, ReadsNothingFromWhatIsNoListOfDictionaries) {
    auto const text = writer.text("text");
    auto const favorite = item("Work", writer.data("/projects"));
    auto const cyclic = writer.instance("NSArray", {{"NS.objects", {PropertyValue::List{}}}});
    auto& cyclicParts = std::get<PropertyValue::Dictionary>(writer.objects[cyclic.index].value);
    cyclicParts["NS.objects"] = {ArchiveWriter::list({cyclic})};

    Reference const roots[]{
        {0},
        {1'000'000},
        text,
        cyclic,
        writer.array({favorite}),
        writer.dictionary({}),
        rootWith({0}),
        rootWith(text),
        rootWith(cyclic),
        rootWith(writer.array({})),
        rootWith(writer.array({favorite, text})),
        rootWith(writer.array({favorite, {0}})),
        rootWith(writer.array({favorite}, "NSSet")),
        writer.dictionary({{favorite, favorite}}),
        writer.dictionary({{writer.text("items"), writer.array({favorite})}, {writer.data("no text"), text}}),
        writer.instance("NSDictionary", {{"NS.keys", {ArchiveWriter::list({text, text})}},
                                         {"NS.objects", {ArchiveWriter::list({text})}}}),
    };
    for (auto const& root : roots)
        EXPECT_EQ(read(writer.finish(root)), none) << "object " << root.index;

    auto archive = writer.finish(rootWith(writer.array({favorite})));
    ASSERT_EQ(read(archive).favorites.size(), 1u);
    for (auto const* part : {"$archiver", "$top", "$objects"}) {
        auto parts = *archive.as<PropertyValue::Dictionary>();
        parts[part] = {std::int64_t{7}};
        EXPECT_EQ(read({parts}), none) << part;
    }
    EXPECT_EQ(read({std::string("text")}), none);
}

TEST_F(FinderFavoritesReaderTest, FallsBackOnThePlacesOfTheDesktop) {
    EXPECT_EQ(FinderFavoritesReader::read(desktop.platform), none);
    desktop.desktopPlaces.places = {{{"Songs", Url::file("/music")},
                                     {std::nullopt, Url::file("/projects")},
                                     {"Letter", Url::file("/letter.txt")},
                                     {"Server", *Url::parse("sftp://host/projects")},
                                     {"Gone", Url::file("/gone")}}};
    EXPECT_EQ(FinderFavoritesReader::read(desktop.platform),
              (Result{{{"Songs", Url::file("/music/")}, {"projects", Url::file("/projects/")}}, true}));
}

} // namespace
} // namespace taliro::testing
