#include "dragdrop/NewFolderCoordinator.h"

#include "browsing/BrowserState.h"
#include "browsing/DirectoryWatcher.h"
#include "dragdrop/ProgressCenter.h"
#include "foundation/MainQueue.h"
#include "foundation/Text.h"
#include "platform/Alerts.h"
#include "platform/FileManager.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"

#include <cstdio>

namespace taliro {

namespace {

std::string description(std::errc error) {
    return std::make_error_condition(error).message();
}

void addFolder(std::vector<Url>& folders, Url const& folder) {
    auto const isSame = [&](Url const& known) { return known.standardized() == folder.standardized(); };
    if (std::ranges::none_of(folders, isSame))
        folders.push_back(folder);
}

} // namespace

NewFolderCoordinator::NewFolderCoordinator(Platform& platform, BrowserState& browser,
                                           ProgressCenter& progress)
    : m_platform(platform), m_browser(browser), m_progress(progress) {}

NewFolderCoordinator& NewFolderCoordinator::shared() {
    // Never destroyed: what it stands on goes before any static object does.
    static auto& coordinator =
        *new NewFolderCoordinator(Platform::current(), BrowserState::shared(), ProgressCenter::shared());
    return coordinator;
}

MenuItem NewFolderCoordinator::menuItem(Url const& folder, std::optional<std::string> const& titleSuffix) {
    return {titleSuffix ? "New Folder in " + *titleSuffix : "New Folder",
            NewFolderActionTarget{*this, folder}};
}

MenuItem NewFolderCoordinator::selectionMenuItem(Url const& folder, std::vector<Url> const& items) {
    return {"New Folder with Selection (" + std::to_string(items.size()) + " Items)",
            NewFolderSelectionTarget{*this, folder, items}};
}

void NewFolderCoordinator::prompt(Url const& folder) {
    begin(folder, "untitled folder", {});
}

void NewFolderCoordinator::promptWithSelection(Url const& folder, std::vector<Url> const& items) {
    begin(folder, "New Folder With Items", items);
}

void NewFolderCoordinator::begin(Url const& folder, std::string_view baseName, std::vector<Url> items) {
    if (m_isCommitting || !folder.isFile())
        return; // the folder before is still being filled, or there is no place for one
    proposedName = uniqueName(folder, baseName);
    m_pendingMove = std::move(items);
    promptingIn = folder;
}

std::string NewFolderCoordinator::uniqueName(Url const& folder, std::string_view base) {
    std::string name(base);
    for (int n = 2; m_platform.fileManager.exists(folder.appending(name)); ++n)
        name = std::string(base) + " " + std::to_string(n);
    return name;
}

void NewFolderCoordinator::cancel() {
    if (m_isCommitting)
        return;
    promptingIn = std::optional<Url>();
    m_pendingMove.clear();
}

std::optional<Url> NewFolderCoordinator::commit(std::string_view name) {
    if (!promptingIn.get() || m_isCommitting)
        return std::nullopt;
    std::string const trimmed(trimmingWhitespaceAndNewlines(name));
    if (trimmed.empty()) {
        cancel();
        return std::nullopt;
    }
    auto const parent = *promptingIn.get();
    auto const folder = parent.appending(trimmed, true);
    auto const made = make(folder, trimmed);
    if (!made) {
        m_platform.alerts.warn("Couldn't create folder", made.error());
        cancel();
        return std::nullopt;
    }

    m_isCommitting = true;
    std::vector<Url> changed{parent};
    moveItems(m_pendingMove, folder, changed);
    m_isCommitting = false;

    for (auto const& url : changed)
        NotificationCenter::standard().post(taliroFolderDidChange, url);
    m_platform.mainQueue.async([&browser = m_browser, folder] { browser.selectSingle(folder); });
    cancel();
    return folder;
}

std::expected<void, std::string> NewFolderCoordinator::make(Url const& folder, std::string_view name) {
    if (name.find('/') != std::string_view::npos)
        return std::unexpected("A name can't contain “/”.");
    if (auto const made = m_platform.fileManager.createDirectory(folder); !made)
        return std::unexpected(description(made.error()));
    return {};
}

void NewFolderCoordinator::moveItems(std::vector<Url> const& items, Url const& newFolder,
                                     std::vector<Url>& changed) {
    auto const name = legible(newFolder.lastPathComponent());
    auto const operation = m_progress.begin("Moving " + numberText(static_cast<std::int64_t>(items.size())) +
                                            (items.size() == 1 ? " item" : " items") + " to “" + name + "”");
    auto const report = [&](TransferProgress const& progress) {
        operation->update(progress.bytesDone, progress.bytesTotal);
        return operation->isCancelled() ? TransferAnswer::cancel : TransferAnswer::carryOn;
    };
    for (auto const& item : items) {
        auto const destination = newFolder.appending(item.lastPathComponent(), item.hasDirectoryPath());
        if (operation->isCancelled() || destination.standardized() == item.standardized())
            continue;
        if (auto const moved = m_platform.fileOperations.move(item, destination, report))
            addFolder(changed, item.deletingLastPathComponent());
        else
            std::fprintf(stderr, "[Taliro] move %s → %s failed: %s\n", item.path().c_str(),
                         destination.path().c_str(), description(moved.error()).c_str());
    }
}

} // namespace taliro
