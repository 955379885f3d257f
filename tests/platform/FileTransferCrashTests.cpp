#include "platform/linux/transfer/Mover.h"

#include "Trees.h"

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace taliro::testing {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int files = 2000;

/// How often a move is killed: enough to notice what breaks, or as often as `TALIRO_CRASHES` says.
int rounds() {
    auto const* const wanted = std::getenv("TALIRO_CRASHES");
    return wanted ? std::atoi(wanted) : 12;
}

struct Silent : transfer::Sink {
    bool advance(std::int64_t) override { return true; }
};

std::string nameOf(int i) {
    return "folder " + std::to_string(i % 40) + "/file " + std::to_string(i);
}
std::string bytesOf(int i) {
    return std::string(static_cast<std::size_t>(i * 37 % 9'000), static_cast<char>('a' + i % 26)) +
           std::to_string(i);
}

void makeTree(fs::path const& root) {
    for (int i = 0; i < 40; ++i)
        fs::create_directories((root / nameOf(i)).parent_path());
    for (int i = 0; i < files; ++i)
        std::ofstream(root / nameOf(i), std::ios::binary) << bytesOf(i);
}

/// A move in a process of its own.
class MovingProcess {
public:
    MovingProcess(fs::path const& from, fs::path const& to, transfer::Leftovers const& leftovers)
        : m_target(to), m_child(::fork()) {
        if (m_child != 0)
            return;
        Silent sink;
        ::_exit(transfer::moveItem(from, to, leftovers, sink) ? 0 : 1);
    }
    /// Until the copy has its name, or the process has ended.
    void waitForTarget() {
        while (!fs::exists(m_target) && !hasEnded())
            std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    void waitForEnd() {
        while (!hasEnded())
            std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    void killAfter(Clock::duration life) {
        std::this_thread::sleep_for(life);
        if (!m_ended)
            ::kill(m_child, SIGKILL);
        waitForEnd();
    }

private:
    bool hasEnded() {
        int status = 0;
        if (!m_ended && ::waitpid(m_child, &status, WNOHANG) == m_child) {
            m_ended = true;
            EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
        }
        return m_ended;
    }

    fs::path m_target;
    pid_t m_child;
    bool m_ended = false;
};

// Killed anywhere: each file is whole in the one place or the other, and nothing half-made is left to be
// seen.
TEST(FileTransferCrash, LosesNoFileWhereverItIsKilled) {
    TemporaryFolder const disk;
    OtherVolume const other(256 << 20);
    OtherVolume const another(256 << 20); // in memory as well where possible: a disk only makes it slow
    if (other.path().empty())
        GTEST_SKIP() << "There is no second volume here.";
    transfer::Leftovers const leftovers(disk / "state");
    auto const source = other.path() / "tree";
    auto const folder = another.isOwn() ? another.path() : disk.makeFolder("to");
    auto const target = folder / "tree";
    makeTree(source);
    auto const start = Clock::now();
    MovingProcess undisturbed(source, target, leftovers);
    undisturbed.waitForTarget();
    auto const placed = Clock::now();
    undisturbed.waitForEnd();
    ASSERT_TRUE(fs::exists(target) && !fs::exists(source));
    auto const copying = placed - start;
    auto const removing = Clock::now() - placed;

    std::mt19937 random(std::random_device{}());
    int before = 0;
    int between = 0;
    int const kills = rounds();
    for (int round = 0; round < kills; ++round) {
        fs::remove_all(target);
        fs::remove_all(source);
        makeTree(source);
        bool const isPlaced = round % 2 == 1; // half of them while the source is removed
        auto const life = std::chrono::duration_cast<Clock::duration>(
            (isPlaced ? removing : copying) * std::uniform_real_distribution<>(0, 1.05)(random));
        SCOPED_TRACE("killed after " + std::to_string(life / std::chrono::microseconds(1)) + " µs");
        MovingProcess move(source, target, leftovers);
        if (isPlaced)
            move.waitForTarget();
        move.killAfter(life);
        leftovers.removeStale();

        int here = 0;
        for (int i = 0; i < files; ++i) {
            bool const isHere = fs::exists(source / nameOf(i));
            bool const isThere = fs::exists(target / nameOf(i));
            here += isHere;
            ASSERT_TRUE(isHere || isThere) << nameOf(i);
            ASSERT_TRUE(!isHere || contentsOf(source / nameOf(i)) == bytesOf(i)) << nameOf(i);
            ASSERT_TRUE(!isThere || contentsOf(target / nameOf(i)) == bytesOf(i)) << nameOf(i);
        }
        ASSERT_TRUE(here == files || fs::exists(target));
        before += !fs::exists(target);
        between += here > 0 && fs::exists(target);
        for (auto const& entry : fs::directory_iterator(folder))
            ASSERT_EQ(entry.path(), target);
        ASSERT_TRUE(!fs::exists(disk / "state") || fs::is_empty(disk / "state"));
    }
    std::printf("%d killed while copying, %d while removing, of %d\n", before, between, kills);
}

} // namespace
} // namespace taliro::testing
