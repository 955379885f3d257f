#pragma once

#include "browsing/DirectoryWatcher.h"
#include "browsing/Listing.h"

#include <memory>
#include <optional>
#include <string>

namespace taliro {

/// Which of a folder's items are shown, and in what order.
struct RowOptions {
    std::string filter;
    SortKey sortKey = SortKey::name;
    bool ascending = true;
    bool operator==(RowOptions const&) const = default;
};

/// The rows of the folder that a view shows. The disk is read when another folder is asked for or the watcher
/// ticked, and then for no more than what changed; a new filter or order works on what was read before.
class FolderRows {
public:
    /// `watcher` watches the folder that is asked for; while it watches another, each tick reads all.
    FolderRows(Platform& platform, DirectoryWatcher& watcher) : m_platform(platform), m_watcher(watcher) {}

    /// Valid until the next call.
    RowList const& rows(Url const& folder, RowOptions const& options);

private:
    void read(Url const& folder);
    bool takeInChanges();

    Platform& m_platform;
    DirectoryWatcher& m_watcher;
    std::optional<Url> m_folder;
    int m_tick = 0;
    std::unique_ptr<Listing> m_listing;
    std::optional<RowOptions> m_options;
    RowList m_rows;
};

} // namespace taliro
