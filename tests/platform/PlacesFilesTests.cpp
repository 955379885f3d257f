#include "platform/linux/BookmarkRecords.h"
#include "platform/linux/FileManagerPlaces.h"
#include "platform/linux/InotifyDirectoryEvents.h"
#include "platform/linux/PathBookmarks.h"
#include "platform/linux/PlacesFiles.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/PropertyListFile.h"
#include "platform/linux/RecentlyUsedFile.h"
#include "platform/linux/XdgStandardFolders.h"
#include "support/BookmarkWriter.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

Date at(std::chrono::sys_days day, std::chrono::nanoseconds time) {
    return Date(day) + time;
}

TEST(RecentlyUsedFile, TakesTheLatestUseOfEachLocalFile) {
    using namespace std::chrono;
    auto const files = parseRecentlyUsed(R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks">
  <bookmark href="file:///home/mira/a%20b.txt" added="2026-01-02T03:04:05Z" modified="2026-02-02T03:04:05.250000Z" visited="2026-01-02T03:04:05Z">
    <info><metadata owner="http://freedesktop.org"><bookmark:applications>
      <bookmark:application name="gedit" exec="&apos;gedit %u&apos;" modified="2026-02-01T00:00:00Z" count="1"/>
    </bookmark:applications></metadata></info>
  </bookmark>
  <bookmark href="file:///home/mira/app.txt" added="2026-01-01T00:00:00Z"><info><metadata>
    <bookmark:application modified="2026-03-01T10:00:00+02:00"/></metadata></info></bookmark>
  <bookmark href="sftp://host/x.txt" modified="2026-02-02T03:04:05Z"/>
  <bookmark href="file:///home/mira/secret.txt" modified="2026-02-02T03:04:05Z"><info><metadata><bookmark:private/></metadata></info></bookmark>
  <bookmark href="file:///home/mira/undated.txt" modified="yesterday"/>
  <bookmark href="file:///home/mira/last.txt" modified="2026-04-01T00:00:00Z"/>
  <bookmark href="file:///home/mira/cut.txt" modified="2026-04-01T00:00:00Z">)");
    std::vector<UsedFile> const expected{
        {"/home/mira/a b.txt", at(2026y / 2 / 2, 3h + 4min + 5s + 250ms)},
        {"/home/mira/app.txt", at(2026y / 3 / 1, 8h)},
        {"/home/mira/last.txt", at(2026y / 4 / 1, 0h)},
    };
    EXPECT_EQ(files, expected);
    auto const never =
        parseRecentlyUsed(R"(<xbel><bookmark href="/a" modified="9999-12-31T23:59:59Z"/></xbel>)");
    ASSERT_EQ(never.size(), 1u); // Later than a date can say.
    EXPECT_GT(never[0].lastUsed, at(2200y / 1 / 1, 0h));
    EXPECT_TRUE(parseRecentlyUsed("\xff\0<xbel").empty());
}

TEST(PropertyListFile, RefusesATextThatHoldsAZero) {
    using namespace std::string_literals;
    auto const trailer = "\x08"s + std::string(6, '\0') + "\x01\x01"s + std::string(7, '\0') + "\x01"s +
                         std::string(15, '\0') + "\x0c"s;
    auto const whole = parsePropertyList("bplist00\x53xyz"s + trailer);
    ASSERT_TRUE(whole);
    EXPECT_EQ(*whole, PropertyValue{"xyz"s});
    EXPECT_FALSE(parsePropertyList("bplist00\x53x\0z"s + trailer));
    auto const xml = [](std::string const& text) {
        return "<plist version=\"1.0\"><string>" + text + "</string></plist>";
    };
    EXPECT_TRUE(parsePropertyList(xml("xyz")));
    EXPECT_FALSE(parsePropertyList(xml("x\0z"s)));
}

TEST(PlacesFiles, ReadsBothKinds) {
    std::vector<DesktopPlace> const gtk{{std::nullopt, Url::file("/home/mira/My work")},
                                        {"The songs", Url::file("/music")},
                                        {"Host", *Url::parse("sftp://host/")}};
    EXPECT_EQ(parseGtkBookmarks(
                  "file:///home/mira/My%20work\n\nnonsense\nfile:///music The songs \r\nsftp://host/ Host"),
              gtk);

    std::vector<DesktopPlace> const kde{{"Home", Url::file("/home/mira")},
                                        {"Trash", *Url::parse("trash:/")},
                                        {std::nullopt, Url::file("/work")}};
    EXPECT_EQ(parseKdePlaces(R"(<xbel>
        <info><metadata owner="x"><withBaloo>true</withBaloo></metadata></info>
        <bookmark href="file:///home/mira"><title>Home</title></bookmark>
        <bookmark href="trash:/"><title>Trash</title></bookmark>
        <bookmark href="file:///hidden"><title>Hidden</title><info><metadata><IsHidden>true</IsHidden></metadata></info></bookmark>
        <bookmark href="file:///work"><info><metadata><IsHidden>false</IsHidden></metadata></info></bookmark>
        <bookmark href="file:///cut"><title>C)"),
              kde);
}

TEST(FileManagerPlaces, FollowsTheListsAsTheyComeAndGo) {
    TemporaryFolder folder;
    qputenv("XDG_CONFIG_HOME", (folder / "config").c_str());
    qputenv("XDG_DATA_HOME", (folder / "data").c_str());
    InotifyDirectoryEvents events;
    PosixFileManager files;
    FileManagerPlaces places(events, files);
    int changes = 0;
    auto const subscription = places.observeChanges([&] { ++changes; });
    auto const labels = [&] {
        std::vector<std::string> found;
        for (auto const& place : places.read().value_or(std::vector<DesktopPlace>{}))
            found.push_back(place.label.value_or("none"));
        return found;
    };
    EXPECT_FALSE(places.read());
    auto const after = [&](auto const& action) {
        changes = 0;
        action();
        return waitUntil([&] { return changes > 0; });
    };
    // Neither folder is there yet.
    EXPECT_TRUE(after([&] { folder.write("config/gtk-3.0/bookmarks", "file:///work Work\n"); }));
    EXPECT_EQ(labels(), std::vector<std::string>{"Work"});
    EXPECT_TRUE(after([&] {
        folder.write("config/gtk-3.0/new", "file:///work Job\n");
        std::filesystem::rename(folder / "config/gtk-3.0/new", folder / "config/gtk-3.0/bookmarks");
    }));
    EXPECT_EQ(labels(), std::vector<std::string>{"Job"});
    EXPECT_TRUE(after([&] { folder.write("config/gtk-3.0/bookmarks", ""); }));
    EXPECT_TRUE(places.read() && labels().empty());
    EXPECT_TRUE(after([&] {
        folder.write("data/user-places.xbel",
                     "<xbel><bookmark href='file:///k'><title>K</title></bookmark></xbel>");
    }));
    EXPECT_TRUE(waitUntil([&] { return labels() == std::vector<std::string>{"K"}; }));
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_DATA_HOME");
}

struct BookmarksTest : ::testing::Test {
    TemporaryFolder folder;
    PathBookmarks bookmarks;
    Url url(std::string_view name, bool isDirectory = true) {
        return Url::file((folder / name).string(), isDirectory);
    }
};

TEST_F(BookmarksTest, FindAFolderUnderAnotherNameButNotAnotherFolder) {
    folder.makeFolder("Fotos/2026");
    folder.write("letter.txt", "");
    auto const photos = bookmarks.make(url("Fotos"));
    auto const letter = bookmarks.make(url("letter.txt", false));
    ASSERT_TRUE(photos && letter);
    EXPECT_FALSE(bookmarks.make(url("missing")));
    EXPECT_FALSE(bookmarks.make(*Url::parse("taliro:///recents")));
    EXPECT_EQ(bookmarks.resolve(*photos), url("Fotos"));
    EXPECT_EQ(bookmarks.resolve(*letter), url("letter.txt", false));

    std::filesystem::rename(folder / "Fotos", folder / "Pictures");
    EXPECT_EQ(bookmarks.resolve(*photos), url("Pictures"));
    std::filesystem::remove_all(folder / "Pictures");
    for (int i = 0; i < 20; ++i) // One of them is likely to get the inode.
        folder.makeFolder("other" + std::to_string(i));
    EXPECT_EQ(bookmarks.resolve(*photos), std::nullopt);
    folder.makeFolder("Fotos");
    EXPECT_EQ(bookmarks.resolve(*photos), url("Fotos"));
}

TEST_F(BookmarksTest, ReadTheRecordLayout) {
    folder.makeFolder("Übung");
    EXPECT_EQ(bookmarks.resolve(BookmarkWriter::bookmark(folder / "Übung")), url("Übung"));
    EXPECT_EQ(bookmarks.resolve(BookmarkWriter::bookmark(folder / "gone")), std::nullopt);
    EXPECT_EQ(pathOfBookmarkRecords(BookmarkWriter().finish({})), "/");
    EXPECT_EQ(pathOfBookmarkRecords(BookmarkWriter().finish({"a"}, 0x1005)), std::nullopt);
    for (auto const* name : {"..", ".", "", "a/b"})
        EXPECT_EQ(pathOfBookmarkRecords(BookmarkWriter().finish({"a", name})), std::nullopt) << name;
}

TEST_F(BookmarksTest, AnyBytesFailToResolve) {
    folder.makeFolder("here");
    auto const own = *bookmarks.make(url("here"));
    auto const foreign = BookmarkWriter::bookmark("/usr/share/doc");
    EXPECT_EQ(bookmarks.resolve({}), std::nullopt);
    for (std::size_t size = 0; size < own.size(); ++size) {
        auto const found = bookmarks.resolve({own.begin(), own.begin() + static_cast<long>(size)});
        // A shortened path may lead to a folder above; nothing else may come of it.
        EXPECT_TRUE(!found || url("here").path().starts_with(found->path())) << size;
    }
    for (std::size_t size = 0; size < foreign.size(); ++size) {
        auto const path = pathOfBookmarkRecords(std::span(foreign).first(size));
        EXPECT_TRUE(!path || *path == "/usr/share/doc") << size;
    }
    // Numbers that point nowhere, at each place.
    for (std::size_t i = 4; i + 4 <= foreign.size(); ++i) {
        auto damaged = foreign;
        std::fill_n(damaged.begin() + static_cast<long>(i), 4, 0xff);
        auto const path = pathOfBookmarkRecords(damaged);
        EXPECT_TRUE(!path || path->size() < 64);
    }
}

TEST(XdgStandardFolders, NamesAFolderInTheUsersLanguage) {
    TemporaryFolder folder;
    folder.write("Music/.directory", "[Desktop Entry]\nName=Music\nName[de]=Musik\n");
    folder.write("Broken/.directory", "\xff[Desktop\nName");
    folder.makeFolder("Plain");
    PosixFileManager files;
    XdgStandardFolders folders(files);
    qputenv("LANGUAGE", "de");
    qputenv("LC_ALL", "C.UTF-8");
    auto const name = [&](char const* of) {
        return folders.localizedName(Url::file((folder / of).string(), true));
    };
    EXPECT_EQ(name("Music"), "Musik");
    EXPECT_EQ(name("Broken"), std::nullopt);
    EXPECT_EQ(name("Plain"), std::nullopt);
    qunsetenv("LANGUAGE");
    qunsetenv("LC_ALL");

    qputenv("XDG_DATA_HOME", "/data of mira");
    EXPECT_EQ(folders.url(StandardFolder::trash), Url::file("/data of mira/Trash/files/"));
    qunsetenv("XDG_DATA_HOME");
}

} // namespace
} // namespace taliro::testing
