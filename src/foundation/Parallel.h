#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <future>
#include <system_error>
#include <thread>
#include <vector>

namespace taliro {

// Work on many items, shared among the processor's cores. Each call returns when all is done.

/// What one thread takes at a time. No more items than these are not worth a second thread.
inline constexpr std::size_t pieceSize = 2048;

/// Runs `work` here and on up to `helpers` threads more; fewer where the system has no more to give.
template <typename Work>
void runOnThreads(std::size_t helpers, Work const& work) {
    std::vector<std::future<void>> others;
    try {
        while (others.size() < helpers)
            others.push_back(std::async(std::launch::async, std::cref(work)));
    } catch (std::system_error const&) { // The others do it.
    }
    work();
    for (auto& other : others)
        other.get();
}

/// How many threads beside this one can work at once.
inline std::size_t spareCores() {
    static std::size_t const spare = std::max(std::thread::hardware_concurrency(), 1u) - 1;
    return spare;
}

/// Calls `work(begin, end)` for each piece of [0, count); every piece but the last has `pieceSize` items.
template <typename Work>
void forEachPiece(std::size_t count, Work const& work) {
    if (count == 0)
        return;
    std::atomic<std::size_t> next = 0;
    runOnThreads(std::min(spareCores(), (count - 1) / pieceSize), [&] {
        for (std::size_t begin; (begin = next.fetch_add(pieceSize)) < count;)
            work(begin, std::min(begin + pieceSize, count));
    });
}

/// `std::stable_sort`, its halves at once.
template <typename Item, typename Before>
void stableSortInHalves(std::vector<Item>& items, Before const& before) {
    auto const middle = items.begin() + static_cast<std::ptrdiff_t>(items.size() / 2);
    bool const isLarge = items.size() > 2 * pieceSize;
    std::atomic<int> next = 0;
    runOnThreads(isLarge ? std::min<std::size_t>(spareCores(), 1) : 0, [&] {
        for (int half; (half = next++) < 2;)
            std::stable_sort(half == 0 ? items.begin() : middle, half == 0 ? middle : items.end(), before);
    });
    std::inplace_merge(items.begin(), middle, items.end(), before);
}

} // namespace taliro
