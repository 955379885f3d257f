#include "browsing/Rows.h"

#include "browsing/SmartFolders.h"

namespace taliro {

Rows::Rows(Platform& platform, BrowserState& state, DirectoryWatcher& watcher,
           Published<std::vector<FileEntry>>& recents)
    : m_state(state), m_recents(recents), m_folder(platform, watcher) {}

RowList Rows::current() {
    if (m_state.currentURL.get() == SmartFolders::recents())
        return RowList(m_recents.get()).filtered(m_state.searchText.get());
    return m_folder.rows(m_state.currentURL.get(),
                         {m_state.searchText.get(), m_state.sortKey.get(), m_state.sortAscending.get()});
}

std::string itemCountLabel(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " item" : " items");
}

} // namespace taliro
