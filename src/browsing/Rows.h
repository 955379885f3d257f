#pragma once

#include "browsing/BrowserState.h"
#include "browsing/FolderRows.h"

namespace taliro {

/// The rows for where the browser is: the folder's, searched and sorted, or the recent files, searched only.
class Rows {
public:
    Rows(Platform& platform, BrowserState& state, DirectoryWatcher& watcher,
         Published<std::vector<FileEntry>>& recents);

    RowList current();

private:
    BrowserState& m_state;
    Published<std::vector<FileEntry>>& m_recents;
    FolderRows m_folder;
};

/// "1 item", "0 items".
std::string itemCountLabel(std::size_t count);

} // namespace taliro
