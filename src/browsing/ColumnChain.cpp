#include "browsing/ColumnChain.h"

#include "browsing/ArrowKeyNav.h"

#include <algorithm>

namespace taliro {

using namespace std::chrono_literals;

ColumnChain::ColumnChain(BrowserState& state, MainQueue& queue, std::function<RowList(std::size_t)> rowsOf)
    : m_state(state), m_queue(queue), m_rowsOf(std::move(rowsOf)) {
    resetColumns(state.currentURL.get());
    m_onLocation = state.currentURL.observe([this](Url const& url) {
        if (m_selfSyncedURL != url)
            resetColumns(url);
    });
    m_onSelection =
        state.selection.observe([this](std::optional<Url> const& url) { mirrorExternalSelection(url); });
}

void ColumnChain::changed() const {
    if (onChange)
        onChange();
}

std::optional<Url> ColumnChain::selectionAt(std::size_t pane) const {
    return pane < m_columnSelections.size() ? m_columnSelections[pane] : std::nullopt;
}

std::size_t ColumnChain::activeColumnIndex() const {
    for (auto pane = m_columnSelections.size(); pane-- > 0;)
        if (m_columnSelections[pane])
            return pane;
    return 0;
}

void ColumnChain::resetColumns() {
    resetColumns(m_state.currentURL.get());
}

void ColumnChain::resetColumns(Url const& root) {
    m_columnSpringWork.cancel();
    m_selfSyncedURL.reset(); // Coming back to a folder that was deepest once is a move from elsewhere, too.
    m_columnRoots = {root};
    m_columnSelections = {std::nullopt};
    changed();
}

/// Keeps the panes up to `pane`.
void ColumnChain::truncate(std::size_t pane) {
    m_columnRoots.resize(std::min(m_columnRoots.size(), pane + 1));
    m_columnSelections.resize(std::min(m_columnSelections.size(), pane + 1));
}

void ColumnChain::select(Url const& target, std::size_t pane) {
    if (pane >= m_columnRoots.size())
        return;
    auto const url = target; // It may live in the rows or selections changed below.
    if (pane + 1 < m_columnRoots.size())
        truncate(pane);
    if (m_columnSelections.size() <= pane)
        m_columnSelections.resize(pane + 1);
    m_columnSelections[pane] = url;
    m_state.selectSingle(url);
    if (url.hasDirectoryPath()) {
        m_columnRoots.push_back(url);
        m_columnSelections.resize(m_columnRoots.size());
    }
    syncCurrentURLToDeepestFolder();
    changed();
}

void ColumnChain::clearSelection(std::size_t pane) {
    if (pane >= m_columnRoots.size())
        return;
    truncate(pane);
    if (pane < m_columnSelections.size())
        m_columnSelections[pane] = std::nullopt;
    selectInState(pane > 0 ? selectionAt(pane - 1) : std::nullopt);
    syncCurrentURLToDeepestFolder();
    changed();
}

void ColumnChain::springLoadToColumn(std::size_t pane) {
    if (pane + 1 >= m_columnRoots.size())
        return;
    truncate(pane);
    selectInState(selectionAt(pane));
    syncCurrentURLToDeepestFolder();
    changed();
}

void ColumnChain::selectInState(std::optional<Url> const& url) {
    if (url)
        m_state.selectSingle(*url);
    else
        m_state.clearSelection();
}

void ColumnChain::syncCurrentURLToDeepestFolder() {
    auto const deepest = m_columnRoots.back();
    if (deepest == m_state.currentURL.get())
        return;
    m_selfSyncedURL = deepest;
    m_state.currentURL = deepest;
}

void ColumnChain::moveWithinColumn(std::size_t pane, int delta) {
    if (pane >= m_columnRoots.size())
        return;
    if (auto const next = ArrowKeyNav::step(m_rowsOf(pane), selectionAt(pane), delta))
        select(*next, pane);
}

void ColumnChain::drillRight(std::size_t pane) {
    auto const folder = selectionAt(pane);
    if (!folder || !folder->hasDirectoryPath() || pane + 1 >= m_columnRoots.size())
        return;
    if (auto const rows = m_rowsOf(pane + 1); !rows.empty())
        select(rows[0].url, pane + 1);
}

/// Follows a selection made elsewhere, where one of the panes shows it.
void ColumnChain::mirrorExternalSelection(std::optional<Url> const& url) {
    if (!url)
        return;
    auto const found = std::ranges::find(m_columnRoots, url->deletingLastPathComponent());
    if (found == m_columnRoots.end())
        return;
    auto const pane = static_cast<std::size_t>(found - m_columnRoots.begin());
    if (selectionAt(pane) == url)
        return;
    if (pane + 1 < m_columnRoots.size())
        m_columnRoots.resize(pane + 1);
    m_columnSelections.resize(pane + 1);
    m_columnSelections[pane] = url;
    changed();
}

void ColumnChain::setPaneTargeted(std::size_t pane, bool targeted) {
    m_columnSpringWork.cancel();
    if (targeted && !isDeepest(pane))
        m_columnSpringWork = m_queue.after(1000ms, [this, pane] { springLoadToColumn(pane); });
}

} // namespace taliro
