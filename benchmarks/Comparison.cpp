#include "Comparison.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace taliro::bench {

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

std::string cell(double value, char const* unit) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), value < 100 ? "%.2f %s" : "%.0f %s", value, unit);
    return text.data();
}

} // namespace

double median(std::vector<double> values) {
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void printTableHead() {
    std::printf("%-46s %-34s %12s %12s %8s\n", "task", "peer", "ours", "theirs", "ratio");
}

void printRow(std::string const& task, std::string const& peer, char const* unit, double ours,
              double theirs) {
    std::printf("%-46s %-34s %12s %12s %8.2f\n", task.c_str(), peer.c_str(), cell(ours, unit).c_str(),
                cell(theirs, unit).c_str(), theirs / ours);
    std::fflush(stdout);
}

void printRowOver(std::string const& task, std::string const& peer, char const* unit, double ours,
                  double theirs) {
    std::printf("%-46s %-34s %12s %12s %8s\n", task.c_str(), peer.c_str(), cell(ours, unit).c_str(),
                ("> " + cell(theirs, unit)).c_str(), ("> " + cell(theirs / ours, "")).c_str());
    std::fflush(stdout);
}

bool compare(std::string const& task, Contender const& ours, std::vector<Contender> const& peers,
             int rounds) {
    std::vector<Contender const*> all{&ours};
    for (auto const& peer : peers)
        all.push_back(&peer);

    std::vector<std::vector<double>> times(all.size());
    std::vector<std::size_t> done(all.size());
    if (ours.prepare)
        ours.prepare();
    auto const expected = ours.run(); // Also warms what everybody finds warm.
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i]->prepare)
                all[i]->prepare();
            auto const start = std::chrono::steady_clock::now();
            done[i] = all[i]->run();
            times[i].push_back(Milliseconds(std::chrono::steady_clock::now() - start).count());
            if (done[i] != expected && !(all[i]->doesLess && done[i] > 0 && done[i] < expected)) {
                std::fprintf(stderr, "%s: %s did %zu, ours %zu\n", task.c_str(), all[i]->name.c_str(),
                             done[i], expected);
                return false;
            }
        }

    auto const our = median(times[0]);
    for (std::size_t i = 1; i < all.size(); ++i) {
        auto const less = " (" + std::to_string(done[i]) + " of " + std::to_string(expected) + ")";
        printRow(task, all[i]->name + (done[i] < expected ? less : ""), "ms", our, median(times[i]));
    }
    return true;
}

} // namespace taliro::bench
