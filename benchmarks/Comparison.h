#pragma once

#include <functional>
#include <string>
#include <vector>

namespace taliro::bench {

/// One way of doing a task. What `run` returns says how much was done; it must be the same for all.
struct Contender {
    std::string name;
    std::function<std::size_t()> run;
    std::function<void()> prepare = {}; ///< before each run, not counted
    bool doesLess = false; ///< of what we do, as the row then tells: a peer that knows fewer kinds of files
};

/// Lets all take turns, so that whatever else the machine does hits each alike, and prints a row of the
/// table for every peer: the medians of ours and theirs, and how many times ours theirs is.
/// False, with a line on standard error, where they did not do the same.
[[nodiscard]] bool compare(std::string const& task, Contender const& ours,
                           std::vector<Contender> const& peers, int rounds = 11);

void printTableHead();

// Each measures one subject; false where something went wrong.
[[nodiscard]] bool measureCopying();
[[nodiscard]] bool measureHotkey();
[[nodiscard]] bool measureListing();
[[nodiscard]] bool measureRecentFiles();
[[nodiscard]] bool measureThumbnails();

} // namespace taliro::bench
