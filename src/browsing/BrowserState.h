#pragma once

#include "browsing/FileEntry.h"
#include "foundation/Published.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace taliro {

/// The folder that every presentation shows, what is selected in it, and how we got here.
class BrowserState {
public:
    explicit BrowserState(Url start);
    static BrowserState& shared();

    Published<Url> currentURL;
    Published<ViewMode> viewMode{ViewMode::columns};
    Published<std::string> searchText;
    Published<SortKey> sortKey{SortKey::name};
    Published<bool> sortAscending{true};
    Published<std::optional<Url>> selection; ///< the item clicked or stepped to last
    Published<std::unordered_set<Url>> selectedURLs;

    std::vector<Url> const& backStack() const { return m_backStack; }       ///< the last is the most recent
    std::vector<Url> const& forwardStack() const { return m_forwardStack; } ///< the last is the next to go to

    /// Does nothing when `target` is shown already.
    void navigate(Url const& target);
    void goBack();
    void goForward();

    void selectSingle(Url const& url);
    void toggleSelection(Url const& url);
    /// Selects from the primary item to `url` in the order of the rows shown.
    void extendSelection(Url const& url, std::vector<Url> const& ordered);
    void clearSelection();

private:
    void step(std::vector<Url>& from, std::vector<Url>& to);

    std::vector<Url> m_backStack;
    std::vector<Url> m_forwardStack;
};

} // namespace taliro
