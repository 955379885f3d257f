#pragma once

#include "browsing/PathHistoryStore.h"
#include "foundation/Published.h"
#include "foundation/Url.h"

#include <optional>
#include <string>
#include <vector>

namespace taliro {

class BrowserState;
struct Platform;

/// The go-to-folder bar without its looks: the path being typed, what it may go on to, and which of that is
/// highlighted.
class GoToPath {
public:
    GoToPath(Platform& platform, BrowserState& browser);

    Published<bool> isOpen{false};
    Published<std::string> text;
    Published<std::vector<Url>> suggestions;
    Published<std::optional<std::size_t>> highlighted;

    /// Opens with the shown folder's path, its subfolders on offer.
    void open();
    void close();
    /// Goes to the typed folder and closes. A path that is none beeps and stays for mending.
    void commit();

    void setText(std::string typed);
    /// Descends into a suggestion: its path and a slash become the text.
    void choose(Url const& suggestion);
    /// The keys' part while the bar is open; false where the key is left to the text field.
    bool pressReturn();
    bool pressDown();
    bool pressUp();

    /// Up to 20 paths for the history menu.
    std::vector<std::string> recentPaths() const;

private:
    void updateSuggestions();

    Platform& m_platform;
    BrowserState& m_browser;
    PathHistoryStore m_history;
};

} // namespace taliro
