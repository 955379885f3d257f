#include "Comparison.h"
#include "Onlooker.h"
#include "Programs.h"

#include <cstdio>
#include <fstream>
#include <thread>

namespace taliro::bench {

using namespace std::chrono_literals;

namespace {

constexpr auto span = 20s;

/// How often the process went to sleep since it started, all its threads together: once after each wake-up.
double sleepsOf(pid_t process) {
    double total = 0;
    std::error_code gone;
    for (auto const& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task", gone)) {
        std::ifstream status(thread.path() / "status");
        std::string key;
        for (double value = 0; status >> key;)
            if (key == "voluntary_ctxt_switches:" && status >> value)
                total += value;
    }
    return total;
}

} // namespace

bool measureIdling(Seat& seat) {
    Onlooker onlooker(seat);
    auto programs = peers();
    programs.insert(programs.begin(), taliro());
    std::vector<testing::Process> processes;
    auto const start = [&](Program const& program) {
        return onlooker.watch(
            [&] {
                processes.push_back(seat.run({program.command}));
                return processes.back().pid();
            },
            30s);
    };
    for (auto const& program : programs)
        if (!start(program)) {
            std::fprintf(stderr, "%s did not show its window\n", program.name.c_str());
            return false;
        }
    seat.pressShortcut(); // Ours hides; the others have nothing of the kind.
    std::this_thread::sleep_for(2s);

    std::vector<double> before;
    for (auto const& process : processes)
        before.push_back(sleepsOf(process.pid()));
    std::this_thread::sleep_for(span);
    for (std::size_t i = 0; i < processes.size(); ++i)
        before[i] = sleepsOf(processes[i].pid()) - before[i];
    for (std::size_t i = 1; i < processes.size(); ++i)
        printRow("wake-ups in 20 s at rest", programs[i].name, "", before[0], before[i]);
    for (auto& process : processes)
        process.terminate();
    return seat.waitUntilSeen(false);
}

} // namespace taliro::bench
