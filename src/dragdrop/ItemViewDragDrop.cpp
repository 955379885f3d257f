#include "dragdrop/ItemViewDragDrop.h"

#include "browsing/BrowserState.h"
#include "dragdrop/FileDragSession.h"
#include "dragdrop/FileDropTarget.h"
#include "dragdrop/ItemContextMenu.h"
#include "dragdrop/NewFolderCoordinator.h"
#include "dragdrop/PasteboardDropHandler.h"
#include "platform/Platform.h"
#include "views/ItemView.h"

#include <QMenu>
#include <algorithm>

namespace taliro {

namespace {

/// All that is selected if there are several and `url` is one of them, else nothing.
std::vector<Url> selectionAround(Url const& url, BrowserState const& state) {
    auto const& selected = state.selectedURLs.get();
    if (selected.size() < 2 || !selected.contains(url))
        return {};
    std::vector<Url> urls(selected.begin(), selected.end());
    std::ranges::sort(urls, {}, &Url::path);
    return urls;
}

std::vector<MenuItem> newFolderItems(Url const& folder, std::vector<Url> const& selection) {
    std::vector<MenuItem> items;
    if (!isDropTarget(folder))
        return items;
    auto& coordinator = NewFolderCoordinator::shared();
    if (!selection.empty())
        items.push_back(coordinator.selectionMenuItem(folder, selection));
    items.push_back(coordinator.menuItem(folder));
    return items;
}

void showMenu(ItemView& view, std::optional<FileEntry> const& entry, Url const& folder, QPoint position,
              BrowserState const& state, Platform& platform) {
    if (entry) {
        auto extra = newFolderItems(folder, selectionAround(entry->url, state));
        makeItemContextMenu(entry->url, std::move(extra), platform, &view)->popup(position);
        return;
    }
    auto* const menu = new QMenu(&view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addMenuItems(*menu, newFolderItems(folder, {}));
    if (menu->isEmpty())
        delete menu;
    else
        menu->popup(position);
}

} // namespace

void attachDragDrop(ItemView& view, ItemViewFolder folder, BrowserState& state, Platform& platform) {
    FileDropTarget::Places places;
    places.folderRowAt = [&view](QPoint position) -> std::optional<FileDropTarget::FolderRow> {
        auto const entry = view.entryAt(position);
        if (!entry || !entry->isDirectory)
            return std::nullopt;
        return FileDropTarget::FolderRow{entry->url, view.rectOf(entry->url)};
    };
    places.destination = folder.shown;
    places.currentFolder = [&state] { return state.currentURL.get().asDirectory(); };
    places.onOpen = folder.open;
    places.onTargeted = folder.onTargeted;
    new FileDropTarget(*view.viewport(), std::move(places), platform, PasteboardDropHandler::shared());

    QObject::connect(&view, &ItemView::dragStarted, &view, [&](FileEntry const& entry) {
        startFileDrag(view, entry.url, selectionAround(entry.url, state), platform);
    });
    QObject::connect(&view, &ItemView::menuRequested, &view,
                     [&, shown = folder.shown](std::optional<FileEntry> const& entry, QPoint position) {
                         showMenu(view, entry, shown(), position, state, platform);
                     });
}

} // namespace taliro
