#pragma once

#include "dragdrop/MenuItem.h"
#include "foundation/Url.h"

#include <vector>

class QMenu;
class QWidget;

namespace taliro {

struct Platform;

/// The menu of one item: reveal it, copy its path, open a terminal where it is, then `extraItems` after a
/// separator. Deletes itself once closed.
QMenu* makeItemContextMenu(Url const& url, std::vector<MenuItem> extraItems, Platform& platform,
                           QWidget* parent);

/// Appends `items`; an empty title is a separator.
void addMenuItems(QMenu& menu, std::vector<MenuItem> items);

// What the menu's own items do.

void revealInFinder(Url const& url, Platform& platform);
void copyPath(Url const& url);
/// In the folder itself, or the one that holds the file. An alert tells where no terminal is installed.
void openTerminalHere(Url const& url, Platform& platform);

} // namespace taliro
