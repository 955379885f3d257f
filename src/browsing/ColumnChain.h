#pragma once

#include "browsing/BrowserState.h"
#include "browsing/Listing.h"
#include "foundation/MainQueue.h"

#include <functional>
#include <optional>
#include <vector>

namespace taliro {

/// The folders that stand side by side in the columns view, each opened by what is selected in the one
/// before. The browser's current folder follows the deepest one, without a trace in the history; a move from
/// elsewhere starts a new chain.
class ColumnChain {
public:
    /// `rowsOf` gives the rows that a pane shows.
    ColumnChain(BrowserState& state, MainQueue& queue, std::function<RowList(std::size_t pane)> rowsOf);

    std::vector<Url> const& columnRoots() const { return m_columnRoots; }
    std::optional<Url> selectionAt(std::size_t pane) const;
    bool isDeepest(std::size_t pane) const { return pane + 1 == m_columnRoots.size(); }
    /// The deepest pane with something selected; the first where nothing is.
    std::size_t activeColumnIndex() const;

    void resetColumns();
    void select(Url const& url, std::size_t pane);
    void clearSelection(std::size_t pane);
    void moveWithinColumn(std::size_t pane, int delta);
    /// Into the folder selected in `pane`: its first item.
    void drillRight(std::size_t pane);
    /// Closes what is right of `pane`.
    void springLoadToColumn(std::size_t pane);
    /// A drag came over a pane's empty area, or left it: resting there for a second closes what is right of
    /// it.
    void setPaneTargeted(std::size_t pane, bool targeted);

    /// The panes or what is selected in them changed.
    std::function<void()> onChange;

private:
    void resetColumns(Url const& root);
    void truncate(std::size_t pane);
    void selectInState(std::optional<Url> const& url);
    void syncCurrentURLToDeepestFolder();
    void mirrorExternalSelection(std::optional<Url> const& url);
    void changed() const;

    BrowserState& m_state;
    MainQueue& m_queue;
    std::function<RowList(std::size_t)> m_rowsOf;
    std::vector<Url> m_columnRoots;                     ///< never empty
    std::vector<std::optional<Url>> m_columnSelections; ///< by pane; may be shorter or longer than the roots
    std::optional<Url> m_selfSyncedURL;                 ///< the folder written into the state by this chain
    WorkItem m_columnSpringWork;
    Subscription m_onLocation;
    Subscription m_onSelection;
};

} // namespace taliro
