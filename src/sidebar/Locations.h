#pragma once

#include "sidebar/SidebarItem.h"

#include <optional>
#include <string_view>
#include <vector>

namespace taliro {

class BrowserState;
class FavoritesStore;
struct Platform;
struct Volume;

/// The sidebar's places beside the favorites, and what can be done with them.
namespace Locations {

SidebarItem const& startupDisk();
/// Nothing where the user has no trash.
std::optional<SidebarItem> trash(Platform& platform);

/// The mounted volumes meant for the user's eyes, without the startup disk.
std::vector<SidebarItem> volumes(Platform& platform);
std::string_view symbol(Volume const& volume);

/// Ejects the volume mounted at `url`, having left it first where the browser is in it. A failure is told by
/// an alert, later.
void eject(Platform& platform, BrowserState& state, Url const& url);

} // namespace Locations

/// Mirroring the file manager's favorites: the switch, and what to do where its list can't be read.
namespace FinderSync {

/// Turns sync on, and asks for access where it lacks.
void enable(Platform& platform, FavoritesStore& favorites);
void turnOff(FavoritesStore& favorites);
void promptForFullDiskAccess(Platform& platform);
void openFullDiskAccessSettings(Platform& platform);

} // namespace FinderSync

} // namespace taliro
