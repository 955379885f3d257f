#pragma once

#include "browsing/DirectoryWatcher.h"
#include "browsing/FolderRows.h"
#include "views/RowsView.h"

namespace taliro {

/// One folder of the columns view.
class ColumnPane : public RowsView {
public:
    static constexpr int paneWidth = 220;

    ColumnPane(Platform& platform, BrowserState& state, Url const& root, QWidget* parent);

    Url const& root() const { return m_root; }
    /// What the pane shows now: `root` under `filter`, with `selected` open in the next pane.
    void present(Url const& root, std::string const& filter, std::optional<Url> const& selected);
    /// The rows as they are at this moment, before they are painted.
    RowList const& currentRows();

protected:
    std::optional<Url> const& alsoSelected() const override { return m_selected; }
    QColor chevronColor(bool selected) const override;

private:
    void refresh();

    Url m_root;
    std::string m_filter;
    std::optional<Url> m_selected;
    DirectoryWatcher m_watcher;
    FolderRows m_folder;
    Refresher m_refresher;
};

} // namespace taliro
