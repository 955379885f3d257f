// Watching a folder that the real kernel tells of.

#include "browsing/DirectoryWatcher.h"
#include "platform/linux/InotifyDirectoryEvents.h"
#include "platform/linux/QtMainQueue.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace taliro::testing {
namespace {

using Names = std::optional<std::vector<std::string>>;

struct DirectoryWatching : ::testing::Test {
    TemporaryFolder folder;
    std::filesystem::path shown = folder.makeFolder("above/shown");
    Url url = Url::file(shown.string(), true);
    InotifyDirectoryEvents events;
    QtMainQueue queue;
    DirectoryWatcher watcher{events, queue};

    DirectoryWatching() { watcher.watch(url); }

    /// Whether the watcher ticks after `action` and, some tick later, knows no more than `names` changed.
    void expectTick(char const* what, std::function<void()> const& action) {
        auto const before = watcher.tick.get();
        action();
        EXPECT_TRUE(waitUntil([&] { return watcher.tick.get() > before; })) << what;
    }
    void expectChange(std::string const& name) {
        auto const before = watcher.tick.get();
        folder.write("above/shown/" + name, "text");
        EXPECT_TRUE(waitUntil([&] {
            return watcher.tick.get() > before && watcher.changedSince(before) == Names{{name}};
        })) << name;
    }
};

TEST_F(DirectoryWatching, SurvivesThatTheFolderGoesAndComesBack) {
    expectChange("a.txt");
    auto const another = folder.makeFolder("above/another");
    expectTick("renamed", [&] { std::filesystem::rename(shown, folder / "above/old"); });
    EXPECT_TRUE(waitUntil([&] { return !watcher.isLive(); }));
    expectTick("another takes its name", [&] { std::filesystem::rename(another, shown); });
    EXPECT_TRUE(waitUntil([&] { return watcher.isLive(); }));
    expectChange("b.txt");

    int const held = ::open(shown.c_str(), O_PATH); // As by a shell that stands in it.
    expectTick("deleted", [&] { std::filesystem::remove_all(shown); });
    EXPECT_TRUE(waitUntil([&] { return !watcher.isLive(); }));
    expectTick("made anew", [&] { std::filesystem::create_directory(shown); });
    EXPECT_TRUE(waitUntil([&] { return watcher.isLive(); }));
    ::close(held);
    expectChange("c.txt");

    expectTick("gone with its parent", [&] { std::filesystem::remove_all(folder / "above"); });
    EXPECT_TRUE(waitUntil([&] { return !watcher.isLive(); }));
    expectTick("both made anew", [&] { std::filesystem::create_directories(shown); });
    EXPECT_TRUE(waitUntil([&] { return watcher.isLive(); }));
    expectChange("d.txt");
}

TEST_F(DirectoryWatching, SurvivesThatItsFileSystemIsUnmounted) {
    watcher.stop();
    if (::mount("none", shown.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "needs the right to mount";
    watcher.watch(url);
    expectChange("a.txt");
    expectTick("unmounted", [&] { EXPECT_EQ(::umount(shown.c_str()), 0); });
    expectChange("b.txt");
}

TEST_F(DirectoryWatching, LostEventsCountAsAChangeOfEverything) {
    std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
    int most = 0;
    ASSERT_TRUE(limit >> most);
    expectTick("more than the kernel keeps", [&] {
        for (int i = 0; i < most; ++i) {
            auto const name = shown / (i % 2 == 0 ? "even" : "odd");
            ::close(::open(name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
            ::unlink(name.c_str());
        }
    });
    EXPECT_EQ(watcher.changedSince(0), std::nullopt);
    expectChange("after.txt");
}

TEST_F(DirectoryWatching, AnnouncedChangesAreNamedByTheKernelAtOnce) {
    auto const before = watcher.tick.get();
    folder.write("above/shown/made.txt", "text");
    NotificationCenter::standard().post(taliroFolderDidChange, url);
    EXPECT_GT(watcher.tick.get(), before);
    EXPECT_EQ(watcher.changedSince(before), (Names{{"made.txt"}}));
}

/// Whether announced changes count for a process that may have no watches.
void watchWithoutWatches(Url const& folder) {
    bool const limited =
        ::unshare(CLONE_NEWUSER) == 0 &&
        static_cast<bool>(std::ofstream("/proc/sys/user/max_inotify_watches") << 0 << std::flush);
    if (!limited)
        std::_Exit(2);
    InotifyDirectoryEvents events;
    QtMainQueue queue;
    DirectoryWatcher watcher(events, queue);
    watcher.watch(folder);
    auto const before = watcher.tick.get();
    NotificationCenter::standard().post(taliroFolderDidChange, folder);
    std::_Exit(!watcher.isLive() && watcher.tick.get() == before + 1 && !watcher.changedSince(before) ? 0
                                                                                                      : 1);
}

TEST_F(DirectoryWatching, WithoutWatchesToBeHadAnnouncedChangesCount) {
    if (std::system("unshare -Ur true 2>/dev/null") != 0)
        GTEST_SKIP() << "needs a user namespace";
    EXPECT_EXIT(watchWithoutWatches(url), ::testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace taliro::testing
