#include "browsing/FolderRows.h"

#include "browsing/DirectoryLoader.h"

namespace taliro {

RowList const& FolderRows::rows(Url const& folder, RowOptions const& options) {
    bool const sameFolder = m_folder == folder;
    bool const unchanged = sameFolder && m_tick == m_watcher.tick.get();
    if (unchanged && m_options == options)
        return m_rows;
    if (!unchanged && !(sameFolder && takeInChanges()))
        read(folder);
    m_options = options;
    m_rows = m_listing->rows(options.filter, options.sortKey, options.ascending);
    return m_rows;
}

void FolderRows::read(Url const& folder) {
    m_folder = folder;
    m_tick = m_watcher.tick.get(); // Before reading: what changes meanwhile is told by a later tick.
    m_listing = std::make_unique<Listing>(DirectoryLoader::list(m_platform, folder));
}

/// Looks up what changed since the last reading; false where that isn't known or reading all is simpler.
bool FolderRows::takeInChanges() {
    if (m_watcher.watchedURL() != m_folder)
        return false;
    auto const changed = m_watcher.changedSince(m_tick);
    if (!changed)
        return false;
    bool const mostlyUnused = m_listing->slots() > 2 * m_listing->size() + 1000;
    bool const mostlyChanged = changed->size() > m_listing->size() + 256;
    if (mostlyUnused || mostlyChanged)
        return false;
    m_tick = m_watcher.tick.get();
    m_listing->update(*changed, DirectoryLoader::list(m_platform, *m_folder, *changed));
    return true;
}

} // namespace taliro
