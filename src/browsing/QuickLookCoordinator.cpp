#include "browsing/QuickLookCoordinator.h"

#include "browsing/BrowserState.h"

namespace taliro {

namespace {
std::function<PreviewPanel*()>& provided() {
    static std::function<PreviewPanel*()> panel;
    return panel;
}
} // namespace

QuickLookCoordinator::QuickLookCoordinator(std::function<PreviewPanel*()> panel)
    : m_panel(std::move(panel)) {}

QuickLookCoordinator& QuickLookCoordinator::shared() {
    static auto* coordinator = new QuickLookCoordinator(
        [] { return provided() ? provided()() : static_cast<PreviewPanel*>(nullptr); });
    return *coordinator;
}

void QuickLookCoordinator::provide(std::function<PreviewPanel*()> panel) {
    provided() = std::move(panel);
}

void QuickLookCoordinator::toggle(Url const& url) {
    auto* const panel = m_panel();
    if (!panel)
        return;
    m_used = panel;
    if (panel->isVisible() && m_item && m_item->url == url) {
        panel->orderOut();
        return;
    }
    m_item = QLItem{url};
    panel->reloadData(m_item);
    panel->attachToBrowserWindow();
    panel->makeKeyAndOrderFront();
}

void QuickLookCoordinator::attach(BrowserState& state) {
    if (m_boundState == &state)
        return;
    m_boundState = &state;
    m_cancellable = state.selection.observe([this](std::optional<Url> const& url) { selectionChanged(url); });
}

void QuickLookCoordinator::selectionChanged(std::optional<Url> const& url) {
    if (!m_used || !m_used->isVisible())
        return;
    m_item = url ? std::optional(QLItem{*url}) : std::nullopt;
    m_used->reloadData(m_item);
}

} // namespace taliro
