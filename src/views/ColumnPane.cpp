#include "views/ColumnPane.h"

#include "platform/Platform.h"
#include "views/Names.h"
#include "views/Theme.h"

namespace taliro {

namespace {

constexpr RowsView::Style look{.rowHeight = 22,
                               .iconSize = 16,
                               .inset = 8,
                               .spacing = 6,
                               .fontPoints = metrics::list,
                               .chevronPoints = 9,
                               .margin = 4};

} // namespace

ColumnPane::ColumnPane(Platform& platform, BrowserState& state, Url const& root, QWidget* parent)
    : RowsView(platform, state, shownName(root.lastPathComponent()), look, parent),
      m_root(root),
      m_watcher(platform),
      m_folder(platform, m_watcher),
      m_refresher(platform.mainQueue, [this] { refresh(); }) {
    m_watcher.watch(m_root);
    m_refresher.dependOn(m_watcher.tick);
    m_refresher.dependOn(state.sortKey);
    m_refresher.dependOn(state.sortAscending);
    m_refresher.schedule();
}

void ColumnPane::present(Url const& root, std::string const& filter, std::optional<Url> const& selected) {
    bool const otherFolder = root != m_root;
    bool const otherRows = otherFolder || filter != m_filter;
    bool const otherSelection = selected != m_selected;
    m_root = root;
    m_filter = filter;
    m_selected = selected;
    if (otherFolder) {
        m_watcher.watch(root);
        setAccessibleName(shownName(root.lastPathComponent()));
        setRows({}, Scroll::toTop);
    }
    if (otherRows)
        m_refresher.schedule();
    m_refresher.flush();
    if (otherSelection)
        showSelection();
    if (otherSelection && selected)
        reveal(*selected, Place::nearest);
}

RowList const& ColumnPane::currentRows() {
    return m_folder.rows(m_root, {m_filter, state().sortKey.get(), state().sortAscending.get()});
}

void ColumnPane::refresh() {
    setRows(currentRows());
}

QColor ColumnPane::chevronColor(bool selected) const {
    return selected ? faded(colors().onAccent, .85) : colors().text2;
}

} // namespace taliro
