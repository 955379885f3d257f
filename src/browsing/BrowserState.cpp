#include "browsing/BrowserState.h"

#include "browsing/DirectoryLoader.h"

#include <algorithm>

namespace taliro {

BrowserState::BrowserState(Url start) : currentURL(std::move(start)) {}

BrowserState& BrowserState::shared() {
    static BrowserState state(RealHome::url());
    return state;
}

void BrowserState::navigate(Url const& target) {
    if (target == currentURL.get())
        return;
    auto const destination = target; // `target` may live in what is changed below.
    m_backStack.push_back(currentURL.get());
    m_forwardStack.clear();
    currentURL = destination;
    clearSelection();
}

void BrowserState::step(std::vector<Url>& from, std::vector<Url>& to) {
    if (from.empty())
        return;
    auto const destination = from.back();
    from.pop_back();
    to.push_back(currentURL.get());
    currentURL = destination;
    clearSelection();
}

void BrowserState::goBack() {
    step(m_backStack, m_forwardStack);
}

void BrowserState::goForward() {
    step(m_forwardStack, m_backStack);
}

void BrowserState::selectSingle(Url const& url) {
    auto const chosen = url;
    selection = chosen;
    selectedURLs = std::unordered_set<Url>{chosen};
}

void BrowserState::toggleSelection(Url const& url) {
    auto const chosen = url;
    auto selected = selectedURLs.get();
    if (selected.erase(chosen) == 0) {
        selected.insert(chosen);
        selectedURLs = std::move(selected);
        selection = chosen;
        return;
    }
    selectedURLs = std::move(selected);
    if (selection.get() == chosen)
        selection = selectedURLs->empty() ? std::nullopt : std::optional(*selectedURLs->begin());
}

void BrowserState::extendSelection(Url const& url, std::vector<Url> const& ordered) {
    auto const primary = selection.get();
    auto const from = primary ? std::ranges::find(ordered, *primary) : ordered.end();
    auto const to = std::ranges::find(ordered, url);
    if (from == ordered.end() || to == ordered.end()) {
        selectSingle(url);
        return;
    }
    auto const chosen = *to;
    selectedURLs = std::unordered_set<Url>(std::min(from, to), std::max(from, to) + 1);
    selection = chosen;
}

void BrowserState::clearSelection() {
    selection = std::optional<Url>();
    selectedURLs = std::unordered_set<Url>();
}

} // namespace taliro
