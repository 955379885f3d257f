#pragma once

#include "dragdrop/MenuItem.h"
#include "foundation/Published.h"
#include "foundation/Url.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace taliro {

class BrowserState;
class ProgressCenter;
struct Platform;

/// The request for a new folder that waits for its name, and the making of that folder.
class NewFolderCoordinator {
public:
    NewFolderCoordinator(Platform& platform, BrowserState& browser, ProgressCenter& progress);
    static NewFolderCoordinator& shared();

    Published<std::optional<Url>> promptingIn; ///< the prompt shows while it is set
    Published<std::string> proposedName;       ///< the name the prompt starts with, free at that time
    std::vector<Url> const& pendingMove() const { return m_pendingMove; }

    /// "New Folder", or "New Folder in " and the suffix.
    MenuItem menuItem(Url const& folder, std::optional<std::string> const& titleSuffix = {});
    /// "New Folder with Selection (3 Items)"
    MenuItem selectionMenuItem(Url const& folder, std::vector<Url> const& items);

    /// Asks for the name of a new folder in `folder`; a request that waits already is replaced.
    void prompt(Url const& folder);
    /// The same, and the folder then takes `items`.
    void promptWithSelection(Url const& folder, std::vector<Url> const& items);
    /// Makes the folder and moves the pending items into it; an item that can't be moved stays and is logged.
    /// Nothing where no request waits, the name is blank, or the folder can't be made, which an alert says.
    std::optional<Url> commit(std::string_view name);
    void cancel();

private:
    void begin(Url const& folder, std::string_view baseName, std::vector<Url> items);
    std::string uniqueName(Url const& folder, std::string_view base);
    std::expected<void, std::string> make(Url const& folder, std::string_view name);
    void moveItems(std::vector<Url> const& items, Url const& newFolder, std::vector<Url>& changed);

    Platform& m_platform;
    BrowserState& m_browser;
    ProgressCenter& m_progress;
    std::vector<Url> m_pendingMove;
    bool m_isCommitting = false;
};

/// What "New Folder" does when chosen.
struct NewFolderActionTarget {
    NewFolderCoordinator& coordinator;
    Url folder;
    void operator()() const { coordinator.prompt(folder); }
};

/// What "New Folder with Selection" does when chosen.
struct NewFolderSelectionTarget {
    NewFolderCoordinator& coordinator;
    Url folder;
    std::vector<Url> items;
    void operator()() const { coordinator.promptWithSelection(folder, items); }
};

} // namespace taliro
