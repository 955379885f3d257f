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

/// A row of the table for figures in `unit`, such as "ms"; less is better.
void printRow(std::string const& task, std::string const& peer, char const* unit, double ours, double theirs);
/// A row for a peer that was given up on at `theirs`.
void printRowOver(std::string const& task, std::string const& peer, char const* unit, double ours,
                  double theirs);
double median(std::vector<double> values);

class Seat;

// Each measures one subject; false where something went wrong.
[[nodiscard]] bool measureCompletion();
[[nodiscard]] bool measureCopying();
[[nodiscard]] bool measureHotkey(Seat& seat);
[[nodiscard]] bool measureIdling(Seat& seat);
[[nodiscard]] bool measureLargeFolder(Seat& seat);
[[nodiscard]] bool measureListing();
[[nodiscard]] bool measureRecentFiles();
[[nodiscard]] bool measureStart(Seat& seat);
[[nodiscard]] bool measureThumbnails();
[[nodiscard]] bool measureViews();

} // namespace taliro::bench
