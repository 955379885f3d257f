#include "platform/linux/HomeMetadataQuery.h"
#include "platform/linux/HomeWalk.h"
#include "platform/linux/InotifyDirectoryEvents.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/QtMainQueue.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;

/// A home folder whose files were changed so many minutes ago.
struct Home : TemporaryFolder {
    Date const now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());

    void add(std::string_view name, std::chrono::minutes age) const {
        auto const file = write(name, "");
        auto const seconds = std::chrono::duration_cast<std::chrono::seconds>((now - age).time_since_epoch());
        timespec const times[2]{{seconds.count(), 0}, {seconds.count(), 0}};
        ::utimensat(AT_FDCWD, file.c_str(), times, 0);
    }
    std::vector<std::string> names(std::vector<MetadataItem> const& items) const {
        std::vector<std::string> found;
        for (auto const& item : items)
            found.push_back(item.path.substr(path().string().size() + 1));
        return found;
    }
    HomeWalk::Options options() const { return {.folder = path(), .changedSince = now - 24h * 365}; }
};

using Names = std::vector<std::string>;

TEST(HomeWalk, FindsTheNewestFilesThatAreTheUsers) {
    Home home;
    home.add("old.txt", 3min);
    home.add("Documents/deep/er/newest.txt", 1min);
    home.add("Music/song.ogg", 2min);
    home.add("Music/Player.app/Contents/Info.plist", 1min);
    home.add("bad\xff name.txt", 4min);
    home.add("ancient.txt", 24h * 400);
    for (auto const* left : {".config/x.conf", ".hidden", "Library/Caches/x", "src/node_modules/m/index.js",
                             "target/CACHEDIR.TAG", "target/out.o", "Music/.git/config"})
        home.add(left, 0min);
    std::filesystem::create_symlink("/usr", home / "linked");
    std::filesystem::create_symlink("old.txt", home / "link.txt");
    std::filesystem::create_directory_symlink(home.path(), home / "Documents/loop");
    ::mkfifo((home / "pipe").c_str(), 0600);
    auto options = home.options();
    options.first = {home / "Music", home / "Missing", "/usr"};
    options.leaveOut = {home / "Library"};

    auto const outcome = HomeWalk::run(options, {});
    EXPECT_TRUE(outcome.isComplete);
    EXPECT_EQ(home.names(outcome.newest), (Names{"Music/Player.app", "Documents/deep/er/newest.txt",
                                                 "Music/song.ogg", "old.txt", "bad\xff name.txt"}));
    options.keep = 2;
    EXPECT_EQ(home.names(HomeWalk::run(options, {}).newest),
              (Names{"Music/Player.app", "Documents/deep/er/newest.txt"}));
    EXPECT_EQ(home.names(HomeWalk::list(home / "Music", options.changedSince)).size(), 2u);
}

TEST(HomeWalk, StaysOnOneFileSystemAndStopsWhenAsked) {
    Home home;
    home.add("a.txt", 1min);
    auto const other = home.makeFolder("mounted");
    bool const mounted = ::mount("none", other.c_str(), "tmpfs", 0, "size=64k") == 0;
    if (mounted)
        home.add("mounted/b.txt", 0min);
    EXPECT_EQ(home.names(HomeWalk::run(home.options(), {}).newest), Names{"a.txt"});
    if (mounted) {
        EXPECT_EQ(::umount(other.c_str()), 0);
    }

    std::string deep = home.path();
    for (int i = 0; i < 300; ++i) { // Deeper than a path can say at once.
        deep += "/d";
        if (::mkdir(deep.c_str(), 0700) != 0)
            break;
    }
    EXPECT_TRUE(HomeWalk::run(home.options(), {}).isComplete);

    for (int i = 0; i < 2000; ++i)
        home.add("many/" + std::to_string(i), 1min);
    std::stop_source stop;
    stop.request_stop();
    auto const stopped = HomeWalk::run(home.options(), stop.get_token());
    EXPECT_FALSE(stopped.isComplete);
    EXPECT_LT(stopped.files, 2000u);
}

struct QueryTest : ::testing::Test {
    Home home;
    QtMainQueue queue;
    InotifyDirectoryEvents events;
    PosixFileManager files;
    FakeStandardFolders folders;
    std::map<std::string, std::string> used; ///< date by name
    int updates = 0;

    QueryTest() {
        qputenv("HOME", home.path().c_str());
        qputenv("XDG_DATA_HOME", (home / ".local/share").c_str());
    }
    ~QueryTest() override { qunsetenv("XDG_DATA_HOME"); }

    /// Writes the list as toolkits do: anew, under another name first.
    void writeList() {
        std::string xbel = "<xbel>";
        for (auto const& [name, date] : used)
            xbel += "<bookmark href=\"file://" + (home / name).string() + "\" modified=\"" + date + "\"/>";
        home.write(".local/share/recently-used.xbel.new", xbel + "</xbel>");
        std::filesystem::rename(home / ".local/share/recently-used.xbel.new",
                                home / ".local/share/recently-used.xbel");
    }
    void start(HomeMetadataQuery& query) {
        query.start({.changedSince = home.now - 24h * 365, .leaveOut = {}}, [this] { ++updates; });
    }
    bool becomes(HomeMetadataQuery& query, Names const& expected) {
        bool const became = waitUntil([&] { return home.names(query.results()) == expected; });
        EXPECT_EQ(home.names(query.results()), expected);
        return became;
    }
};

TEST_F(QueryTest, OrdersByUseThenByChangeAndStaysLive) {
    home.add("used first.txt", 50min);
    home.add("used last.txt", 60min);
    home.add("changed.txt", 1min);
    home.add("docs/changed before.txt", 2min);
    home.add("used, too old.txt", 24h * 400);
    used = {{"used first.txt", "2026-01-01T00:00:00Z"},
            {"used last.txt", "2026-01-02T00:00:00Z"},
            {"used, too old.txt", "2026-01-03T00:00:00Z"},
            {"gone.txt", "2026-01-04T00:00:00Z"}};
    writeList();
    HomeMetadataQuery query(queue, events, files, folders);
    start(query);
    EXPECT_TRUE(
        becomes(query, {"used last.txt", "used first.txt", "changed.txt", "docs/changed before.txt"}));

    used["changed.txt"] = "2026-02-01T00:00:00Z";
    writeList();
    EXPECT_TRUE(
        becomes(query, {"changed.txt", "used last.txt", "used first.txt", "docs/changed before.txt"}));

    home.add("docs/new.txt", 0min);
    EXPECT_TRUE(becomes(query, {"changed.txt", "used last.txt", "used first.txt", "docs/new.txt",
                                "docs/changed before.txt"}));
    std::filesystem::remove(home / "used last.txt");
    std::filesystem::remove(home / "docs/changed before.txt");
    EXPECT_TRUE(becomes(query, {"changed.txt", "used first.txt", "docs/new.txt"}));

    query.disableUpdates();
    auto const before = updates;
    used["docs/new.txt"] = "2026-03-01T00:00:00Z";
    writeList();
    home.add("mark.txt", 0min);
    queue.async([&] { query.enableUpdates(); });
    EXPECT_TRUE(becomes(query, {"docs/new.txt", "changed.txt", "used first.txt", "mark.txt"}));
    EXPECT_GT(updates, before);
}

TEST_F(QueryTest, PublishesTheHundredUsedLastOfALargeHome) {
    for (int i = 0; i < 1200; ++i)
        home.add(std::to_string(i % 100) + "/" + std::to_string(i) + ".txt", std::chrono::minutes(i));
    Names expected;
    for (int i = 0; i < 500; ++i) { // The older the file, the later it was used.
        auto const name = std::to_string(i % 100) + "/" + std::to_string(i) + ".txt";
        used[name] = "2026-01-01T00:" + std::string(i / 60 < 10 ? "0" : "") + std::to_string(i / 60) + ":" +
                     (i % 60 < 10 ? "0" : "") + std::to_string(i % 60) + "Z";
        if (i >= 400)
            expected.insert(expected.begin(), name);
    }
    writeList();
    HomeMetadataQuery query(queue, events, files, folders);
    start(query);
    auto const first = [&] {
        auto names = home.names(query.results());
        names.resize(expected.size());
        return names;
    };
    // The walk and the list answer in either order.
    EXPECT_TRUE(waitUntil([&] { return query.results().size() == 1000 && first() == expected; }));
    EXPECT_EQ(first(), expected);
}

TEST_F(QueryTest, TellsAlsoThatThereIsNothing) {
    HomeMetadataQuery query(queue, events, files, folders);
    start(query);
    EXPECT_TRUE(waitUntil([&] { return updates > 0; }));
    EXPECT_TRUE(query.results().empty());
}

TEST_F(QueryTest, EndsWhileItWalks) {
    for (int i = 0; i < 1000; ++i)
        home.add("many/" + std::to_string(i), 1min);
    HomeMetadataQuery query(queue, events, files, folders);
    start(query);
}

} // namespace
} // namespace taliro::testing
