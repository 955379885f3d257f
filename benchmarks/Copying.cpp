#include "Comparison.h"

#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "support/TemporaryFolder.h"

#include <cstdio>
#include <fcntl.h>
#include <random>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace taliro::bench {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t largeSize = 2LL << 30;
constexpr int smallFiles = 20'000;
constexpr int filesAFolder = 100;

/// Bytes that no file system can make less of.
std::string noise(std::size_t count) {
    static std::mt19937_64 random(1);
    std::string bytes(count, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

bool writeLarge(fs::path const& path) {
    std::ofstream file(path, std::ios::binary);
    auto const block = noise(1 << 20);
    for (std::int64_t done = 0; done < largeSize; done += 1 << 20)
        file << block;
    return file.flush().good();
}

bool writeTree(fs::path const& root) {
    bool isGood = true;
    for (int i = 0; i < smallFiles; ++i) {
        auto const folder = root / std::to_string(i / filesAFolder);
        if (i % filesAFolder == 0)
            fs::create_directories(folder);
        std::ofstream file(folder / std::to_string(i), std::ios::binary);
        isGood = (file << noise(static_cast<std::size_t>(500 + i * 37 % 8000))).flush().good() && isGood;
    }
    return isGood;
}

bool runCommand(std::vector<std::string> arguments) {
    std::vector<char*> raw;
    for (auto& argument : arguments)
        raw.push_back(argument.data());
    raw.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    return ::posix_spawnp(&child, raw[0], nullptr, nullptr, raw.data(), environ) == 0 &&
           ::waitpid(child, &status, 0) == child && status == 0;
}

/// How much there is below `path`, so that nobody gets away with less.
std::size_t measure(fs::path const& path) {
    std::error_code error;
    if (!fs::is_directory(path, error))
        return static_cast<std::size_t>(fs::file_size(path, error));
    auto const all = fs::recursive_directory_iterator(path, error);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// Each copy gets a name of its own, and only large files make room for the next: a file system that has just
/// removed thousands of files may take many times as long to make new ones.
bool compareCopies(std::string const& task, fs::path const& source, fs::path const& targets, int rounds) {
    auto const from = source.string();
    std::string to;
    int made = 0;
    auto const done = [&](bool isGood) { return isGood ? measure(to) : 0; };
    auto const prepare = [&] {
        if (!fs::is_directory(source))
            fs::remove(to);
        to = targets / (source.filename().string() + std::to_string(++made));
        ::sync();
    };
    auto const ours = [&] {
        auto& files = Platform::current().fileOperations;
        return done(files.copy(Url::file(from), Url::file(to), {}).has_value());
    };
    auto const cp = [&] { return done(runCommand({"cp", "-a", from, to})); };
    auto const cpToDisk = [&] {
        return done(runCommand({"cp", "-a", from, to}) && runCommand({"sync", "-f", to}));
    };
    return compare(task, {"ours, on disk when done", ours, prepare},
                   {{"cp -a", cp, prepare}, {"cp -a, then sync -f", cpToDisk, prepare}}, rounds);
}

} // namespace

bool measureCopying() {
    testing::TemporaryFolder const folder;
    auto const large = folder / "large";
    auto const tree = folder / "tree";
    if (!writeLarge(large) || !writeTree(tree)) {
        std::fprintf(stderr, "Can't write %lld bytes in %s\n", static_cast<long long>(largeSize),
                     folder.path().c_str());
        return false;
    }
    ::sync();
    auto const copies = folder.makeFolder("copies");
    return compareCopies("copy a file of 2 GiB", large, copies, 5) &&
           compareCopies("copy a tree of 20,000 small files", tree, copies, 5);
}

} // namespace taliro::bench
