#include "platform/linux/FileDescriptor.h"
#include "platform/linux/HomeMetadataQuery.h"
#include "platform/linux/HomeWalk.h"
#include "platform/linux/InotifyDirectoryEvents.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/QtMainQueue.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <QDateTime>

#include <fcntl.h>
#include <future>
#include <iostream>
#include <ranges>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace taliro::testing {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

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
    for (auto const* left : {".config/x.conf", ".hidden", ".cache/x", ".local/share/Trash/files/x",
                             "Music/.Trash-1000/files/x", "Library/Caches/x", "src/node_modules/m/index.js",
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
    EXPECT_EQ(home.names(HomeWalk::list(home / "Music", options.changedSince, 9)).size(), 2u);
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

TEST(HomeWalk, WaitsForNoSleepingServer) {
    Home home;
    home.add("a.txt", 1min);
    auto const asleep = home.makeFolder("Server/share");
    // A file system whose server never answers: whoever looks at it waits until the connection ends.
    FileDescriptor server(::open("/dev/fuse", O_RDWR | O_CLOEXEC));
    auto const data = "rootmode=40000,user_id=0,group_id=0,fd=" + std::to_string(server.get());
    if (!server || ::mount("server", asleep.c_str(), "fuse", 0, data.c_str()) != 0)
        GTEST_SKIP() << "needs the right to mount";
    auto options = home.options();
    options.first = {asleep / "Documents"};
    auto walk = std::async(std::launch::async, [&] { return HomeWalk::run(options, {}); });
    bool const ended = walk.wait_for(20s) == std::future_status::ready;
    ::umount2(asleep.c_str(), MNT_DETACH);
    server.reset();
    EXPECT_TRUE(ended);
    EXPECT_EQ(home.names(walk.get().newest), Names{"a.txt"});
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

/// Tells how the thread that reads is scheduled.
struct WatchedFileManager : PosixFileManager {
    std::optional<std::string> readFile(Url const& file, std::size_t limit) override {
        constexpr int byProcess = 1; // As linux/ioprio.h has it: the class above 13 bits, the third is idle.
        niceness = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
        diskClass = static_cast<int>(::syscall(SYS_ioprio_get, byProcess, 0)) >> 13;
        return PosixFileManager::readFile(file, limit);
    }
    std::atomic<int> niceness = 0;
    std::atomic<int> diskClass = 0;
};

TEST_F(QueryTest, LetsEverybodyElseGoFirst) {
    writeList();
    WatchedFileManager watched;
    HomeMetadataQuery query(queue, events, watched, folders);
    start(query);
    EXPECT_TRUE(waitUntil([&] { return updates > 0 && watched.niceness == 19; }));
    EXPECT_EQ(watched.diskClass, 3);
    EXPECT_EQ(::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid())), 0);
}

/// A home of `count` files, a hundred a folder, neither made nor changed in the order of their names.
struct LargeHome {
    LargeHome(Home const& home, int count) : count(count) {
        for (int i = 0; i < count; ++i) {
            auto const path = home / name(i);
            if (i % 100 == 0)
                std::filesystem::create_directories(path.parent_path());
            FileDescriptor const file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
            auto const changed =
                std::chrono::duration_cast<std::chrono::seconds>((home.now - age(i)).time_since_epoch());
            timespec const times[2]{{changed.count(), 0}, {changed.count(), 0}};
            ::futimens(file.get(), times);
        }
    }
    static std::string name(int file) {
        return std::to_string(file / 10000) + "/" + std::to_string(file / 100) + "/" + std::to_string(file) +
               ".txt";
    }
    std::chrono::seconds age(int file) const { return 100s * (std::int64_t{file} * 7919 % count); }
    bool matches(int file) const { return age(file) <= 24h * 365; }

    int count;
};

/// So many files that a thousand are few beside them. TALIRO_HOME_FILES=1000000 for a large home indeed.
int homeFiles() {
    char const* wanted = std::getenv("TALIRO_HOME_FILES");
    return wanted ? std::atoi(wanted) : 20'000;
}

std::string dateOfUse(int second) {
    auto const start = QDateTime::fromString(QStringLiteral("2026-01-01T00:00:00Z"), Qt::ISODate);
    return start.addSecs(second).toString(Qt::ISODate).toStdString();
}

double milliseconds(auto duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// What a walk through `home` costs, by itself.
void printCost(Home const& home, int count) {
    HomeWalk::Outcome outcome;
    std::thread([&] {
        HomeWalk::becomeBackground();
        rusage before{};
        rusage after{};
        ::getrusage(RUSAGE_THREAD, &before);
        auto const begin = Clock::now();
        outcome = HomeWalk::run(home.options(), {});
        auto const taken = Clock::now() - begin;
        ::getrusage(RUSAGE_THREAD, &after);
        auto const processor = [](rusage const& usage) {
            return std::chrono::seconds(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                   std::chrono::microseconds(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
        };
        auto const grown = after.ru_maxrss - before.ru_maxrss;
        std::cout << "walk through " << outcome.files << " files in " << outcome.folders
                  << " folders: " << milliseconds(taken) << " ms, "
                  << milliseconds(processor(after) - processor(before)) << " ms of a processor, " << grown
                  << " KiB more memory\n";
        EXPECT_LT(grown, 8 * 1024);
    }).join();
    EXPECT_EQ(outcome.files, static_cast<std::size_t>(count));
}

TEST_F(QueryTest, FindsTheFilesUsedLastInALargeHome) {
    LargeHome const large(home, homeFiles());
    printCost(home, large.count);

    std::map<int, int> useOf;
    for (int i = 0; i < 500; ++i) {
        auto const [file, second] = *useOf.emplace(i * (large.count / 500), i * 37 % 500).first;
        used[large.name(file)] = dateOfUse(second);
    }
    writeList();
    auto const rank = [&](int file) {
        auto const use = useOf.find(file);
        return std::pair(use == useOf.end() ? 0 : -1 - use->second, large.age(file));
    };
    std::vector<int> files;
    for (int file = 0; file < large.count; ++file)
        if (large.matches(file))
            files.push_back(file);
    std::ranges::partial_sort(files, files.begin() + 1000, {}, rank);
    Names expected;
    for (int const file : files | std::views::take(1000))
        expected.push_back(large.name(file));

    HomeMetadataQuery query(queue, events, this->files, folders);
    auto const begin = Clock::now();
    start(query);
    auto const hasFound = [&](bool byWalking) {
        return std::ranges::any_of(query.results(), [&](MetadataItem const& item) {
            return item.lastUsed.has_value() != byWalking;
        });
    };
    EXPECT_TRUE(waitUntil([&] { return hasFound(false); }));
    auto const listed = Clock::now();
    EXPECT_TRUE(waitUntil([&] { return hasFound(true); }));
    auto const walked = Clock::now();
    EXPECT_TRUE(waitUntil([&] { return home.names(query.results()) == expected; }));
    std::cout << "used files after " << milliseconds(listed - begin) << " ms, changed ones after "
              << milliseconds(walked - begin) << " ms, all of them after "
              << milliseconds(Clock::now() - begin) << " ms\n";
    ASSERT_EQ(home.names(query.results()), expected);

    auto const opened = expected.back();
    used[opened] = dateOfUse(1000);
    writeList();
    std::ranges::rotate(expected, expected.end() - 1);
    EXPECT_TRUE(becomes(query, expected)) << opened;

    std::optional<HomeMetadataQuery> ended(std::in_place, queue, events, this->files, folders);
    start(*ended);
    EXPECT_TRUE(waitUntil([&] { return !ended->results().empty(); }));
    auto const end = Clock::now();
    ended.reset();
    std::cout << "ended while it walked within " << milliseconds(Clock::now() - end) << " ms\n";
}

TEST_F(QueryTest, TellsAlsoThatThereIsNothing) {
    HomeMetadataQuery query(queue, events, files, folders);
    start(query);
    EXPECT_TRUE(waitUntil([&] { return updates > 0; }));
    EXPECT_TRUE(query.results().empty());
}

} // namespace
} // namespace taliro::testing
