#include "platform/linux/transfer/Mover.h"

#include "Trees.h"

#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

namespace taliro::testing {
namespace {

namespace fs = std::filesystem;
using transfer::Result;

/// Does something at the first of the chosen moments.
struct Meddler : transfer::Sink {
    std::function<void()> onItem; ///< at each item
    std::function<void()> onByte; ///< when the first bytes have been copied
    int stopAt = -1;              ///< the call that is answered with a stop
    std::vector<std::string> names;
    std::int64_t bytes = 0;

    void began(std::string_view name) override {
        names.emplace_back(name);
        if (onItem)
            onItem();
    }
    bool advance(std::int64_t more) override {
        bytes += more;
        if (more > 0 && onByte)
            std::exchange(onByte, nullptr)();
        return stopAt < 0 || stopAt-- > 0;
    }
};

/// The rights of somebody else for a while, where the test has those of root.
struct AsNobody {
    AsNobody() {
        if (::geteuid() == 0)
            isOther = ::setegid(65534) == 0 && ::seteuid(65534) == 0;
    }
    ~AsNobody() {
        if (isOther && (::seteuid(0) != 0 || ::setegid(0) != 0))
            std::abort();
    }
    bool isOther = false;
};

void append(fs::path const& file, std::string_view bytes) {
    std::ofstream(file, std::ios::app | std::ios::binary) << bytes;
}

enum class Way { copy, move };

struct FileTransferTest : ::testing::Test {
    TemporaryFolder disk;
    OtherVolume other;
    transfer::Leftovers leftovers{disk / "state"};
    fs::path source = disk / "from/item";
    fs::path target = disk.makeFolder("to");

    void SetUp() override {
        if (other.path().empty())
            GTEST_SKIP() << "There is no second volume here.";
        disk.makeFolder("from");
    }
    Result transfer(Way way, fs::path const& from, fs::path const& to, transfer::Sink& sink) {
        return way == Way::copy ? transfer::copyItem(from, to, leftovers, sink)
                                : transfer::moveItem(from, to, leftovers, sink);
    }
    Result transfer(Way way, fs::path const& from, fs::path const& to) {
        Meddler none;
        return transfer(way, from, to, none);
    }
    /// Neither half-made items nor notes of them.
    void expectNothingIn(fs::path const& folder) {
        EXPECT_TRUE(fs::is_empty(folder)) << folder;
        expectNoNotes();
    }
    void expectNoNotes() { EXPECT_TRUE(!fs::exists(disk / "state") || fs::is_empty(disk / "state")); }
};

TEST_F(FileTransferTest, KeepsEverythingOfATree) {
    makeRichTree(source);
    auto const original = describe(source);
    ASSERT_GT(original.size(), 16u);
    auto const withoutAttributes = [](std::map<std::string, std::string> tree) {
        for (auto& [name, text] : tree)
            text = text.substr(0, text.find(" user."));
        return tree;
    };

    ASSERT_TRUE(transfer(Way::copy, source, target / "copy"));
    EXPECT_EQ(describe(target / "copy"), original);
    EXPECT_EQ(describe(source), original);
    EXPECT_LE(allocated(target / "copy/holes"), allocated(source / "holes"));

    // A memory disk may hold no attributes of the user's; all else it does.
    ASSERT_TRUE(transfer(Way::move, source, other.path() / "moved"));
    EXPECT_EQ(withoutAttributes(describe(other.path() / "moved")), withoutAttributes(original));
    EXPECT_LE(allocated(other.path() / "moved/holes"), 2 << 20);
    EXPECT_FALSE(fs::exists(source));

    ASSERT_TRUE(transfer(Way::move, target / "copy", target / "renamed"));
    EXPECT_EQ(describe(target / "renamed"), original);
    ASSERT_TRUE(transfer(Way::move, other.path() / "moved", source));
    EXPECT_EQ(withoutAttributes(describe(source)), withoutAttributes(original));
    expectNothingIn(other.path());
}

TEST_F(FileTransferTest, TakesSingleItemsOfEveryKind) {
    makeRichTree(source);
    auto const original = describe(source);
    for (auto const* name :
         {"empty", "small", "large", "holes", "to folder", "to nowhere", "pipe", "socket"}) {
        SCOPED_TRACE(name);
        Meddler sink;
        ASSERT_TRUE(transfer(Way::copy, source / name, target / name, sink));
        EXPECT_EQ(describe(target / name), describe(source / name));
        struct stat status {};
        ASSERT_EQ(::lstat((source / name).c_str(), &status), 0);
        EXPECT_EQ(sink.bytes, S_ISREG(status.st_mode) ? status.st_size : 0);
        ASSERT_TRUE(transfer(Way::move, target / name, other.path() / name));
        ASSERT_TRUE(transfer(Way::move, other.path() / name, target / name));
    }
    expectNothingIn(other.path());
    EXPECT_EQ(describe(source), original);
}

TEST_F(FileTransferTest, CopiesLargeFilesToTheLastByte) {
    constexpr std::size_t large = 16 << 20; // from here on past the page cache
    for (auto const size : {large - 1, large, large + 1, large + (4 << 20) + 4095}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 2654435761u >> 13);
        disk.write("from/item", bytes);
        Meddler sink;
        ASSERT_TRUE(transfer(Way::copy, source, target / "copy", sink));
        EXPECT_TRUE(contentsOf(target / "copy") == bytes) << size;
        EXPECT_EQ(sink.bytes, static_cast<std::int64_t>(size));
        fs::remove(target / "copy");
    }
    Meddler sink;
    sink.onByte = [&] { fs::resize_file(source, 6 << 20); };
    ASSERT_TRUE(transfer(Way::copy, source, target / "copy", sink));
    EXPECT_TRUE(contentsOf(target / "copy") == contentsOf(source));
    EXPECT_EQ(fs::file_size(target / "copy"), 6u << 20);
}

TEST_F(FileTransferTest, LeavesBothSidesAsTheyWereWhereItFails) {
    disk.write("from/item/file", "content");
    disk.write("from/item/sub/file", "more");
    disk.write("from/locked/file", "kept");
    fs::create_directory_symlink(source, disk / "from/way in");
    fs::create_directory(other.path() / "taken");
    std::ofstream(other.path() / "taken file") << "theirs";
    auto const elsewhere = other.path();
    auto const longName = std::string(256, 'n');

    struct Case {
        Way way;
        fs::path from, to;
        std::errc error;
    };
    Case const cases[] = {
        {Way::copy, disk / "from/gone", target / "x", std::errc::no_such_file_or_directory},
        {Way::move, disk / "from/gone", elsewhere / "x", std::errc::no_such_file_or_directory},
        {Way::copy, source, target / "none/x", std::errc::no_such_file_or_directory},
        {Way::copy, source, target / longName, std::errc::filename_too_long},
        {Way::move, source, target / longName, std::errc::filename_too_long},
        {Way::move, source, elsewhere / longName, std::errc::filename_too_long},
        {Way::copy, source, elsewhere / "taken", std::errc::file_exists},
        {Way::move, source, elsewhere / "taken", std::errc::file_exists},
        {Way::move, source, disk / "from/locked", std::errc::file_exists},
        {Way::copy, source / "file", elsewhere / "taken file", std::errc::file_exists},
        {Way::move, source / "file", elsewhere / "taken file", std::errc::file_exists},
        {Way::copy, source, disk / "from/way in/sub/x", std::errc::invalid_argument},
        {Way::move, source, disk / "from/way in/sub/x", std::errc::invalid_argument},
        {Way::move, other.path(), target / "volume",
         other.isOwn() ? std::errc::device_or_resource_busy : std::errc::permission_denied},
    };
    auto const before = describe(disk.path() / "from");
    auto const theirs = describe(elsewhere);
    for (auto const& test : cases) {
        if (test.from == other.path() && !other.isOwn())
            continue;
        SCOPED_TRACE(test.from.string() + " to " + test.to.string().substr(0, 80));
        EXPECT_EQ(transfer(test.way, test.from, test.to), std::unexpected(test.error));
        auto now = describe(disk.path() / "from");
        now["/item/sub"] = before.at("/item/sub"); // its time changed: it held a half-made copy for a moment
        EXPECT_EQ(now, before);
        EXPECT_EQ(describe(elsewhere).size(), theirs.size());
        EXPECT_EQ(contentsOf(elsewhere / "taken file"), "theirs");
        expectNothingIn(target);
    }
}

TEST_F(FileTransferTest, RespectsRightsBeforeItBegins) {
    disk.write("from/item/file", "content");
    disk.write("from/item/closed/file", "more");
    fs::permissions(disk.path(), fs::perms::all);
    for (auto const* open : {"from", "from/item", "to"})
        fs::permissions(disk / open, fs::perms::all);
    fs::permissions(other.path(), fs::perms::all);
    disk.makeFolder("sealed");
    auto const before = describe(disk / "from");
    {
        AsNobody const nobody;
        if (::geteuid() == 0)
            GTEST_SKIP() << "There are no other rights to take on here.";
        // Below, a folder refuses to give its file away; the target refuses any.
        EXPECT_EQ(transfer(Way::move, source, other.path() / "x"),
                  std::unexpected(std::errc::permission_denied));
        EXPECT_EQ(transfer(Way::copy, source, disk / "sealed/x"),
                  std::unexpected(std::errc::permission_denied));
        EXPECT_EQ(transfer(Way::move, source, disk / "sealed/x"),
                  std::unexpected(std::errc::permission_denied));
    }
    fs::permissions(source / "file", fs::perms::none);
    {
        AsNobody const nobody;
        EXPECT_EQ(transfer(Way::copy, source, target / "x"), std::unexpected(std::errc::permission_denied));
    }
    fs::permissions(source / "file", fs::perms(0644));
    EXPECT_EQ(describe(disk / "from"), before);
    expectNothingIn(target);
    expectNothingIn(other.path());
    {
        AsNobody const nobody; // what is another's becomes ours, without the rights lent with it
        fs::path const mine = target / "mine";
        ASSERT_TRUE(transfer(Way::copy, source, mine));
        struct stat status {};
        ASSERT_EQ(::stat((mine / "file").c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, ::geteuid());
    }
}

TEST_F(FileTransferTest, TurnsBackWhereTheVolumeIsFull) {
    if (!other.isOwn())
        GTEST_SKIP() << "A volume of a given size can't be mounted here.";
    OtherVolume const small(1 << 20);
    disk.write("from/item/first", std::string(300'000, 'a'));
    disk.write("from/item/second", std::string(900'000, 'b'));
    auto const before = describe(source);
    for (auto const way : {Way::copy, Way::move}) {
        EXPECT_EQ(transfer(way, source, small.path() / "x"), std::unexpected(std::errc::no_space_on_device));
        EXPECT_EQ(describe(source), before);
        expectNothingIn(small.path());
    }
}

TEST_F(FileTransferTest, ReadsFromWhatMayNotBeWrittenAndMovesNothingOfIt) {
    if (!other.isOwn())
        GTEST_SKIP() << "A volume can't be made read-only here.";
    disk.write("from/item/file", "ours");
    auto const theirs = other.path() / "kept";
    fs::create_directory(theirs);
    std::ofstream(theirs / "file") << "theirs";
    ASSERT_EQ(::mount(nullptr, other.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    auto const refused = std::unexpected(std::errc::read_only_file_system);
    for (auto const way : {Way::copy, Way::move})
        EXPECT_EQ(transfer(way, source, other.path() / "x"), refused);
    EXPECT_EQ(transfer(Way::move, theirs, target / "x"), refused);
    expectNothingIn(target);
    EXPECT_EQ(contentsOf(source / "file"), "ours");
    EXPECT_TRUE(transfer(Way::copy, theirs, target / "x"));
    EXPECT_EQ(contentsOf(target / "x/file"), "theirs");
}

TEST_F(FileTransferTest, StopsWhenAsked) {
    makeRichTree(source);
    auto const before = describe(source);
    for (auto const way : {Way::copy, Way::move}) {
        auto const place = other.path() / "x";
        for (int stopAt = 0; stopAt < 24; ++stopAt) {
            Meddler sink;
            sink.stopAt = stopAt;
            EXPECT_EQ(transfer(way, source, place, sink), std::unexpected(std::errc::operation_canceled));
            expectNothingIn(other.path());
        }
        EXPECT_EQ(describe(source), before);
    }
}

TEST_F(FileTransferTest, MovesNothingThatChangesMeanwhile) {
    disk.write("from/item/a", std::string(100'000, 'a'));
    disk.write("from/item/b", std::string(100'000, 'b'));
    auto const file = source / "a";
    for (auto const way : {Way::move, Way::copy}) {
        Meddler sink;
        sink.onByte = [&] { append(file, "+"); };
        auto const place = other.path() / "file";
        auto const done = transfer(way, file, place, sink);
        if (way == Way::move) {
            EXPECT_EQ(done, std::unexpected(std::errc::device_or_resource_busy));
            expectNothingIn(other.path());
        } else { // a copy begins anew
            ASSERT_TRUE(done);
            EXPECT_EQ(contentsOf(place), contentsOf(file));
            EXPECT_EQ(fs::file_size(place), 100'002u);
        }
    }

    // Copied already when it changes: the copy stays, and so does what is newer.
    Meddler sink;
    sink.onItem = [&] {
        if (sink.names.size() == 3) // the folder and one file are done
            append(source / sink.names[1], "new");
    };
    EXPECT_EQ(transfer(Way::move, source, other.path() / "tree", sink),
              std::unexpected(std::errc::device_or_resource_busy));
    ASSERT_GE(sink.names.size(), 3u);
    EXPECT_TRUE(contentsOf(source / sink.names[1]).ends_with("new"));
    EXPECT_FALSE(fs::exists(source / sink.names[2]));
    EXPECT_GE(fs::file_size(other.path() / "tree/a"), 100'000u);
    EXPECT_GE(fs::file_size(other.path() / "tree/b"), 100'000u);
    expectNoNotes();
}

TEST_F(FileTransferTest, GivesUpWhereASourceVanishes) {
    for (auto const* name : {"a", "b", "c"})
        disk.write(std::string("from/item/") + name, name);
    Meddler sink;
    sink.onItem = [&] {
        for (auto const* name : {"a", "b", "c"})
            if (sink.names.size() == 2 && sink.names[1] != name)
                fs::remove(source / name);
    };
    EXPECT_EQ(transfer(Way::move, source, other.path() / "x", sink),
              std::unexpected(std::errc::no_such_file_or_directory));
    EXPECT_EQ(contentsOf(source / sink.names[1]), sink.names[1]);
    expectNothingIn(other.path());
}

TEST_F(FileTransferTest, NeverTakesANameThatAppearsMeanwhile) {
    disk.write("from/item/file", "ours");
    for (auto const way : {Way::copy, Way::move}) {
        Meddler sink;
        sink.onItem = [&] { std::ofstream(other.path() / "x") << "theirs"; };
        EXPECT_EQ(transfer(way, source, other.path() / "x", sink), std::unexpected(std::errc::file_exists));
        EXPECT_EQ(contentsOf(other.path() / "x"), "theirs");
        EXPECT_EQ(contentsOf(source / "file"), "ours");
        fs::remove(other.path() / "x");
        expectNothingIn(other.path());
    }
}

TEST_F(FileTransferTest, ClaimsNamesWhereItCantRenameInOneStep) {
    auto const folder = ::open(disk.path().c_str(), O_RDONLY | O_DIRECTORY);
    auto const rename = [&](char const* from, char const* to) {
        return transfer::renameByClaiming(folder, from, folder, to);
    };
    disk.write("file", "1");
    disk.write("dir/inside", "2");
    disk.write("taken", "3");
    disk.makeFolder("empty");
    for (auto const* name : {"file", "dir"})
        for (auto const* to : {"taken", "empty"})
            EXPECT_EQ(rename(name, to), std::unexpected(std::errc::file_exists));
    EXPECT_EQ(rename("dir", "dir/inside dir"), std::unexpected(std::errc::invalid_argument));
    EXPECT_TRUE(fs::is_empty(disk / "empty"));
    EXPECT_TRUE(rename("file", "file2"));
    EXPECT_TRUE(rename("dir", "dir2"));
    EXPECT_EQ(contentsOf(disk / "file2") + contentsOf(disk / "dir2/inside") + contentsOf(disk / "taken"),
              "123");
    EXPECT_FALSE(fs::exists(disk / "file") || fs::exists(disk / "dir") ||
                 fs::exists(disk / "dir2/inside dir"));
    ::close(folder);
}

TEST_F(FileTransferTest, RemovesOnlyItsOwnLeftovers) {
    auto const name = transfer::Leftovers::temporaryName();
    disk.write("to/" + name + "/deep/file", "half");
    fs::permissions(target / name / "deep", fs::perms::owner_read);
    disk.write("state/" + name, target.string() + "/");
    disk.write("state/.taliro-../../../../../x.part", ""); // not a name of ours
    disk.write("state/" + transfer::Leftovers::temporaryName(), "relative");
    auto const absent = "state/" + transfer::Leftovers::temporaryName();
    disk.write(absent, "/not/mounted/now/");
    disk.write("to/kept", "whole");
    auto const running = transfer::Leftovers::temporaryName();
    disk.write("to/" + running, "growing");
    auto const note = leftovers.note(target.string() + "/", running);

    leftovers.removeStale();
    EXPECT_FALSE(fs::exists(target / name));
    EXPECT_TRUE(fs::exists(target / running) && fs::exists(target / "kept"));
    EXPECT_TRUE(fs::exists(disk / absent));
    auto const notes = fs::directory_iterator(disk / "state");
    EXPECT_EQ(std::distance(begin(notes), end(notes)), 3); // the foreign one, the absent, the running
}

} // namespace
} // namespace taliro::testing
