#include "Comparison.h"

#include "platform/linux/HomeWalk.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace taliro::bench {

namespace {

constexpr int folderCount = 4'000;
constexpr int filesPerFolder = 50;
constexpr std::size_t kept = 1'000;

bool fill(testing::TemporaryFolder const& home) {
    for (int folder = 0; folder < folderCount; ++folder) {
        auto const path = home.makeFolder("Area " + std::to_string(folder % 20) + "/" +
                                          std::to_string(folder % 200) + "/" + std::to_string(folder));
        for (int file = 0; file < filesPerFolder; ++file) {
            auto const made = ::open((path / ("note " + std::to_string(file) + ".txt")).c_str(),
                                     O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
            if (made < 0)
                return false;
            ::close(made);
        }
    }
    return true;
}

std::size_t walk(std::string const& home) {
    auto const outcome =
        HomeWalk::run({.folder = home,
                       .changedSince = std::chrono::system_clock::now() - std::chrono::hours(24 * 365),
                       .keep = kept},
                      {});
    return outcome.files == folderCount * filesPerFolder ? outcome.newest.size() : 0;
}

/// The same by the tools of the shell.
std::size_t find(std::string const& home) {
    auto const command =
        "find '" + home +
        "' -xdev -mindepth 1 -name '.*' -prune -o -type f -mtime -365 -printf '%T@ %p\\n' | sort -rn | "
        "head -n " +
        std::to_string(kept);
    std::unique_ptr<FILE, decltype([](FILE* pipe) { ::pclose(pipe); })> const output(
        ::popen(command.c_str(), "r"));
    std::size_t lines = 0;
    for (int byte = 0; output && (byte = std::fgetc(output.get())) != EOF;)
        lines += byte == '\n';
    return lines;
}

} // namespace

bool measureRecentFiles() {
    testing::TemporaryFolder const home;
    if (!fill(home)) {
        std::fprintf(stderr, "the home folder of %d files could not be made\n", folderCount * filesPerFolder);
        return false;
    }
    std::string const path = home.path();
    return compare("the 1,000 newest of 200,000 files", {.name = "Taliro", .run = [&] { return walk(path); }},
                   {{.name = "find | sort | head", .run = [&] { return find(path); }}});
}

} // namespace taliro::bench
