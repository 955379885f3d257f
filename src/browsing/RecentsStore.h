#pragma once

#include "browsing/FileEntry.h"
#include "browsing/SmartFolders.h"
#include "foundation/Published.h"
#include "platform/MetadataQuery.h"

#include <chrono>
#include <string_view>
#include <vector>

namespace taliro {

struct Platform;

/// The files that the user used last, kept up to date from `start` to the end of the process.
class RecentsStore {
public:
    /// Files whose content is older than a year before `now` are none of them.
    explicit RecentsStore(Platform& platform, Date now = std::chrono::system_clock::now());
    static RecentsStore& shared();

    Published<std::vector<FileEntry>> entries; ///< at most `resultLimit`, the one used last first
    Published<bool> isActive{false};

    /// Begins to gather; further calls do nothing.
    void start();

    static constexpr std::size_t resultLimit = 100;

private:
    void publishResults();
    bool isOrdinary(std::string_view path) const;
    std::optional<FileEntry> makeEntry(std::string const& path) const;

    Platform& m_platform;
    Date m_changedSince;
    Url m_library; ///< the user's own, full of what programs keep
};

} // namespace taliro
