#include "Comparison.h"
#include "Onlooker.h"
#include "Programs.h"
#include "Samples.h"

#include <cstdio>
#include <fstream>
#include <optional>

namespace taliro::bench {

using namespace std::chrono_literals;

namespace {

constexpr int itemCount = 100'000;
constexpr int rounds = 3;
constexpr int changes = 5;
/// Who takes longer is not waited for.
constexpr auto limit = 30s;
/// Who takes longer is measured once.
constexpr double slow = 3000; // ms

struct Figures {
    std::vector<double> idle, resident, change;
    bool gaveUp = false;

    bool isKnown() const { return gaveUp || (!idle.empty() && idle.front() > slow); }
};

/// How long it takes until a file made in the folder shown is on the screen. It sorts first, so it is in
/// sight.
bool measureChanges(Onlooker& onlooker, std::filesystem::path const& folder, pid_t process,
                    Figures& figures) {
    for (int i = 0; i < changes; ++i) {
        auto const file = folder / ("000 new " + std::to_string(i) + ".txt");
        auto const seen = onlooker.watch(
            [&] {
                std::ofstream(file).flush();
                return process;
            },
            limit);
        if (!seen)
            return false;
        figures.change.push_back(seen->shown.count());
    }
    for (int i = 0; i < changes; ++i)
        std::filesystem::remove(folder / ("000 new " + std::to_string(i) + ".txt"));
    return true;
}

/// The program runs and shows the home folder; then it is asked for the large one by its own command.
bool openOnce(Seat& seat, Onlooker& onlooker, Program const& program, std::filesystem::path const& folder,
              Figures& figures) {
    testing::Process process;
    testing::Process request;
    auto const started = onlooker.watch(
        [&] {
            process = seat.run({program.command});
            return process.pid();
        },
        limit);
    if (!started) {
        std::fprintf(stderr, "%s did not show its window\n", program.name.c_str());
        return false;
    }
    auto const seen = onlooker.watch(
        [&] {
            request = seat.run({program.command, folder});
            return process.pid();
        },
        limit);
    figures.gaveUp = !seen;
    bool ok = true;
    if (seen) {
        figures.idle.push_back(seen->idle.count());
        auto const memory = memoryOf(process.pid());
        ok = memory && measureChanges(onlooker, folder, process.pid(), figures);
        if (memory)
            figures.resident.push_back(memory->resident);
        process.terminate();
    }
    process.kill();
    return seat.waitUntilSeen(false) && ok;
}

} // namespace

bool measureLargeFolder(Seat& seat) {
    testing::TemporaryFolder const folder;
    if (!makeSampleFiles(folder.path(), itemCount))
        return false;
    Onlooker onlooker(seat);
    auto programs = peers();
    programs.insert(programs.begin(), taliro());
    std::vector<Figures> figures(programs.size());
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < programs.size(); ++i)
            if (!figures[i].isKnown() && !openOnce(seat, onlooker, programs[i], folder.path(), figures[i]))
                return false;

    auto const& ours = figures.front();
    auto const print = [&](char const* task, char const* unit, std::vector<double> Figures::*figure) {
        for (std::size_t i = 1; i < programs.size(); ++i)
            if (!(figures[i].*figure).empty())
                printRow(task, programs[i].name, unit, median(ours.*figure), median(figures[i].*figure));
    };
    constexpr auto open = "go to a folder of 100,000, until idle";
    print(open, "ms", &Figures::idle);
    for (std::size_t i = 1; i < programs.size(); ++i)
        if (figures[i].gaveUp)
            printRowOver(open, programs[i].name, "ms", median(ours.idle),
                         std::chrono::duration<double, std::milli>(limit).count());
    print("memory then, resident", "MiB", &Figures::resident);
    print("one file more there, on the screen", "ms", &Figures::change);
    return true;
}

} // namespace taliro::bench
