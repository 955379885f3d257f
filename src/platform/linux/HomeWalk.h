#pragma once

#include "platform/MetadataQuery.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace taliro {

/// Looks through a folder for the files changed last. Takes the same little memory however many files there
/// are: it keeps the newest ones and one listing for each level that it is below the folder.
class HomeWalk {
public:
    struct Options {
        std::string folder;
        std::vector<std::string> first{};    ///< folders in it to begin with
        std::vector<std::string> leaveOut{}; ///< folders in it not to look into
        Date changedSince{};
        std::size_t keep = 1000;
        std::chrono::milliseconds progressInterval{500};
    };
    struct Outcome {
        std::vector<MetadataItem> newest; ///< the newest first
        std::size_t files = 0;
        std::size_t folders = 0;
        bool isComplete = false; ///< it was not stopped
    };
    /// Called with the newest so far, in no order.
    using Progress = std::function<void(std::vector<MetadataItem> const&)>;

    /// Files and folders that are hidden, caches and what other programs generate are left out, and so are
    /// other file systems and network ones altogether: what is mounted in the folder is not even looked at.
    /// Links are not followed.
    static Outcome run(Options const& options, std::stop_token const& stop, Progress const& progress = {});
    /// Of the matching files directly in `folder` the `keep` newest.
    static std::vector<MetadataItem> list(std::string const& folder, Date changedSince, std::size_t keep);
    /// Lets the calling thread's work come after that of everyone else.
    static void becomeBackground();
};

} // namespace taliro
