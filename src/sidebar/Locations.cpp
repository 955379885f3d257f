#include "sidebar/Locations.h"

#include "browsing/BrowserState.h"
#include "platform/Alerts.h"
#include "platform/FileManager.h"
#include "platform/Platform.h"
#include "platform/StandardFolders.h"
#include "platform/Volumes.h"
#include "platform/Workspace.h"
#include "sidebar/FavoritesStore.h"

namespace taliro {

SidebarItem const& Locations::startupDisk() {
    static SidebarItem const item{
        .id = "/", .title = "Macintosh HD", .symbol = "internaldrive", .url = Url()};
    return item;
}

std::optional<SidebarItem> Locations::trash(Platform& platform) {
    auto const url = platform.standardFolders.url(StandardFolder::trash);
    if (!url)
        return std::nullopt;
    return SidebarItem{.id = url->path(), .title = "Trash", .symbol = "trash", .url = url->asDirectory()};
}

std::string_view Locations::symbol(Volume const& volume) {
    if (volume.isLocal == false)
        return "externaldrive.connected.to.line.below";
    if (volume.isRemovable == true)
        return "externaldrive";
    return volume.isInternal.value_or(true) ? "internaldrive" : "externaldrive";
}

std::vector<SidebarItem> Locations::volumes(Platform& platform) {
    std::vector<SidebarItem> items;
    for (auto const& volume : platform.volumes.mounted()) {
        auto const url = volume.mountPoint.asDirectory();
        if (volume.isBrowsable != true || url.path() == "/")
            continue;
        items.push_back({.id = url.path(),
                         .title = volume.name.value_or(url.lastPathComponent()),
                         .symbol = std::string(symbol(volume)),
                         .url = url});
    }
    return items;
}

void Locations::eject(Platform& platform, BrowserState& state, Url const& url) {
    // By the text of the path alone: a neighbour whose name begins the same is left, too.
    if (state.currentURL->isFile() && state.currentURL->path().starts_with(url.path()))
        state.navigate(platform.fileManager.homeDirectory());
    auto& alerts = platform.alerts;
    platform.volumes.eject(url, [&alerts, name = url.lastPathComponent()](auto const& outcome) {
        if (!outcome)
            alerts.warn("Couldn't eject “" + legible(name) + "”", outcome.error());
    });
}

void FinderSync::enable(Platform& platform, FavoritesStore& favorites) {
    favorites.setSyncWithFinder(true);
    if (favorites.finderAccessDenied)
        promptForFullDiskAccess(platform);
}

void FinderSync::turnOff(FavoritesStore& favorites) {
    favorites.setSyncWithFinder(false);
    favorites.finderAccessDenied = false;
}

void FinderSync::promptForFullDiskAccess(Platform& platform) {
    auto const answer = platform.alerts.ask(
        "Full Disk Access Required",
        "To read your Finder sidebar favorites, grant Taliro Full Disk Access in System Settings → Privacy & "
        "Security.\n\nAlternatively, you can turn off Finder sync and manually add favorites by dragging "
        "folders "
        "onto the sidebar.",
        {"Open System Settings", "Later"});
    if (answer == 0)
        openFullDiskAccessSettings(platform);
}

void FinderSync::openFullDiskAccessSettings(Platform& platform) {
    if (!platform.workspace.openPrivacySettings())
        platform.alerts.warn("This desktop has no settings page for file access",
                             "Taliro shows the favorites of your file manager as soon as there are some that "
                             "it can read.");
}

} // namespace taliro
