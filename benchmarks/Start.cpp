#include "Comparison.h"
#include "Onlooker.h"
#include "Programs.h"

#include <algorithm>
#include <cstdio>

namespace taliro::bench {

using namespace std::chrono_literals;

namespace {

constexpr int rounds = 7;

struct Figures {
    std::vector<double> shown, resident, share;
};

bool startOnce(Seat& seat, Onlooker& onlooker, Program const& program, Figures& figures) {
    testing::Process process;
    auto const seen = onlooker.watch(
        [&] {
            process = seat.run({program.command});
            return process.pid();
        },
        30s);
    auto const memory = memoryOf(process.pid());
    process.terminate();
    if (!seen || !memory || !seat.waitUntilSeen(false)) {
        std::fprintf(stderr, "%s did not show its window or did not end\n", program.name.c_str());
        return false;
    }
    figures.shown.push_back(seen->shown.count());
    figures.resident.push_back(memory->resident);
    figures.share.push_back(memory->share);
    return true;
}

} // namespace

bool measureStart(Seat& seat) {
    Onlooker onlooker(seat);
    auto programs = peers();
    programs.insert(programs.begin(), taliro());
    for (auto const& program : programs)
        if (Figures first; !startOnce(seat, onlooker, program, first)) // Later ones find files in memory.
            return false;
    std::vector<Figures> figures(programs.size());
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < programs.size(); ++i)
            if (!startOnce(seat, onlooker, programs[i], figures[i]))
                return false;

    auto const print = [&](char const* task, char const* unit, std::vector<double> Figures::*figure) {
        for (std::size_t i = 1; i < programs.size(); ++i)
            printRow(task, programs[i].name, unit, median(figures[0].*figure), median(figures[i].*figure));
    };
    print("start, see the home folder", "ms", &Figures::shown);
    print("memory then, resident", "MiB", &Figures::resident);
    print("memory then, its share (PSS)", "MiB", &Figures::share);
    return true;
}

} // namespace taliro::bench
