#pragma once

#include "browsing/ColumnChain.h"
#include "views/BrowserKeys.h"
#include "views/ColumnPane.h"

#include <QPropertyAnimation>
#include <QScrollArea>

#include <vector>

namespace taliro {

/// Folders side by side: selecting one opens it in the next pane.
class ColumnsView : public QScrollArea {
public:
    ColumnsView(Platform& platform, BrowserState& state, QWidget* parent = nullptr);

    bool handleKey(QKeyEvent const& event);
    /// Starts over with the current folder alone.
    void resetColumns() { m_chain.resetColumns(); }

    Url const& deepestRoot() const { return m_chain.columnRoots().back(); }
    /// The deepest pane's.
    RowList const& deepestRows();

    /// A folder opens in the next pane, anything else with its default application.
    void open(Url const& url, std::size_t pane);
    /// A drag came over a pane's empty area, or left it.
    void setPaneTargeted(std::size_t pane, bool targeted) { m_chain.setPaneTargeted(pane, targeted); }
    /// The rows of the deepest pane changed; emitted when they are shown.
    std::function<void()> onRowsChanged;
    /// A pane is new and not yet shown: drags and menus attach to it here.
    std::function<void(ColumnPane& pane, std::size_t index)> onPaneMade;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void syncPanes();
    void addPane(Url const& root);
    void layOutPanes();
    void scrollToEnd();

    Platform& m_platform;
    BrowserState& m_state;
    BrowserKeys m_keys;
    ColumnChain m_chain;
    Refresher m_refresher;
    std::vector<ColumnPane*> m_panes;
    QPropertyAnimation m_scrolling;
};

} // namespace taliro
